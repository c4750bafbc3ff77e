#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>

#include "Controls.h"
#include "HostRule.h"
#include "resource.h"

namespace test_support {

/// The window of the rule editor, used by messages.
class RuleEditor {
 public:
  explicit RuleEditor(HWND window) : window_(window) {}

  HWND window() const { return window_; }
  HWND item(int id) const { return GetDlgItem(window_, id); }
  std::wstring text(int id) const { return item_text(window_, id); }
  std::wstring description() const { return text(IDC_DESCRIPTION); }
  bool checked(int id) const { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
  bool enabled(int id) const { return IsWindowEnabled(item(id)) != FALSE; }
  LRESULT selection(int combo) const { return SendDlgItemMessageW(window_, combo, CB_GETCURSEL, 0, 0); }
  /// The data of the item that a combo box has chosen, -1 for none.
  long chosen(int combo) const;
  short spin() const { return static_cast<short>(SendDlgItemMessageW(window_, IDC_OFFSET_SPIN, UDM_GETPOS, 0, 0)); }
  HWND spins_edit() const {
    return reinterpret_cast<HWND>(SendDlgItemMessageW(window_, IDC_OFFSET_SPIN, UDM_GETBUDDY, 0, 0));
  }
  /// Where the caret of an edit is; fails the test when something is selected.
  DWORD caret(int edit) const;

  void press(int id) const { click(window_, id); }
  void ok() const { press(IDOK); }
  void cancel() const { press(IDCANCEL); }
  /// Chooses the item at an index of a combo box, or the one with that data if there is one.
  void choose(int combo, int index) const;
  void choose_data(int combo, long data) const;
  /// Replaces the text of an edit by typing; an empty text is deleted with the Delete key.
  void enter(int edit, const std::wstring& text) const;
  /// Clicks the upper or the lower half of the spin.
  void spin_up(int times = 1) const { click_spin(1, times); }
  void spin_down(int times = 1) const { click_spin(3, times); }
  /// Sets every control to what the rule says, without typing.
  void fill(const HostRule& rule) const;

 private:
  void click_spin(LONG quarters_from_top, int times) const;

  HWND window_;
};

}  // namespace test_support
