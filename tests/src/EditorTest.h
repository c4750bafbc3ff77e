#pragma once

#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include <functional>

#include "Controls.h"
#include "DialogDriver.h"
#include "EditExpirationRuleDialog.h"
#include "ExpectedReports.h"
#include "FakeHost.h"
#include "Input.h"
#include "ModalDialog.h"
#include "resource.h"

namespace editor_test {

using test_support::Fault;
using test_support::HostRule;
using zd_expiration_rule_plugin::CEditExpirationRuleDialog;

inline constexpr int day_of_month_group[] = {IDC_DAY_OF_MONTH, IDC_DAY_SUFFIX, IDC_DAY_MONTH};
inline constexpr int weekday_group[] = {IDC_WEEK_ORDINAL, IDC_WEEKDAY, IDC_WEEKDAY_SUFFIX, IDC_WEEKDAY_MONTH};
inline constexpr int combos[] = {IDC_DAY_TYPE,     IDC_DAY_OF_MONTH, IDC_DAY_MONTH,
                                 IDC_WEEK_ORDINAL, IDC_WEEKDAY,      IDC_WEEKDAY_MONTH};

/// The editor on the screen, as its user sees and uses it.
class Editor {
 public:
  Editor(HWND window, CEditExpirationRuleDialog& dialog) : window_(window), dialog_(dialog) {}

  HWND window() const { return window_; }
  CEditExpirationRuleDialog& dialog() const { return dialog_; }
  HWND item(int id) const { return GetDlgItem(window_, id); }
  std::wstring text(int id) const { return test_support::window_text(item(id)); }
  std::wstring description() const { return text(IDC_DESCRIPTION); }
  bool checked(int id) const { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
  bool enabled(int id) const { return IsWindowEnabled(item(id)) != FALSE; }
  LRESULT selection(int combo) const { return SendDlgItemMessageW(window_, combo, CB_GETCURSEL, 0, 0); }
  short spin() const { return static_cast<short>(SendDlgItemMessageW(window_, IDC_OFFSET_SPIN, UDM_GETPOS, 0, 0)); }

  void click(int id) const { test_support::click(item(id)); }
  void choose(int combo, int index) const { test_support::choose(item(combo), index); }
  /// Replaces what stands in an edit by typing.
  void enter(int edit, const std::wstring& text) const;
  void spin_up(int times = 1) const;
  void spin_down(int times = 1) const;
  void ok() const { click(IDOK); }
  void cancel() const { click(IDCANCEL); }
  /// Presses OK, reads the message box that appears and closes it.
  test_support::MessageBoxContent refused_ok() const;

  /// Hands a message to the dialog's message map; answers whether it was handled.
  bool handles(UINT message, WPARAM wParam, LPARAM lParam) const;
  bool handles_command(int id, int notification) const;

 private:
  HWND window_;
  CEditExpirationRuleDialog& dialog_;
};

/// The assertion that an offset is shown at which the spin does not stand.
inline constexpr char offset_is_not_the_spins[] =
    "ASSERT value == _spin.GetPos() | SpinControlHelper.cpp:* AdjustEditControl";

/// A host that stores rule 5, and the editor on it.
class EditorTest : public testing::Test {
 protected:
  static constexpr long stored_id = 5;

  EditorTest();
  ~EditorTest() override;

  /// Opens the editor, lets the user act and answers the dialog's result. 0 makes a new rule.
  INT_PTR edit(long rule_id, const std::function<void(Editor&)>& act);
  INT_PTR edit(const std::function<void(Editor&)>& act) { return edit(stored_id, act); }
  /// Opens the editor and presses OK at once.
  void save_unchanged(long rule_id = stored_id);

  HostRule& rule() { return host.rules().front(); }
  /// What was reported since the last call. Every test takes all reports: one that is left fails it.
  static std::vector<std::string> reports() { return test_support::take_reports_without_lines(); }

  test_support::FakeHost host;
  StorageBlock block;
};

}  // namespace editor_test
