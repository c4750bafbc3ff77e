#pragma once

#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "Controls.h"
#include "resource.h"

namespace test_support {

/// The window of the rule list, used by messages.
class RuleList {
 public:
  using Names = std::vector<std::wstring>;

  /// A row by its name and the rule number that the dialog keeps beside it.
  struct Row {
    std::wstring name;
    LPARAM rule_id = 0;

    friend bool operator==(const Row&, const Row&) = default;
    friend void PrintTo(const Row& row, std::ostream* out) {
      *out << row.rule_id << ' ' << testing::PrintToString(row.name);
    }
  };
  using Rows = std::vector<Row>;

  explicit RuleList(HWND window) : window_(window) {}

  HWND window() const { return window_; }
  HWND item(int id) const { return GetDlgItem(window_, id); }
  HWND view() const { return item(IDC_RULES_LIST); }
  bool enabled(int id) const { return IsWindowEnabled(item(id)) != FALSE; }
  /// Whether Edit and Delete are enabled; fails the test when they differ.
  bool can_change() const;

  int count() const { return static_cast<int>(send(LVM_GETITEMCOUNT)); }
  std::wstring name(int index) const;
  LPARAM data(int index) const;
  /// Gives a row another number, as only a test does.
  void set_data(int index, LPARAM data) const;
  Names names() const;
  std::vector<LPARAM> rule_ids() const;
  Rows rows() const;
  /// The row of a rule, -1 for none.
  int find(LPARAM rule_id) const;
  /// The selected row, -1 for none.
  int selected() const { return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED)); }
  UINT state(int index) const { return static_cast<UINT>(send(LVM_GETITEMSTATE, static_cast<WPARAM>(index), ~0U)); }
  RECT bounds(int index) const;
  int column_width() const { return static_cast<int>(send(LVM_GETCOLUMNWIDTH, 0)); }

  /// Selects a row as a click on it does; -1 clears the selection.
  void select(int index) const;
  /// Selects the row of a rule; a list that does not show the rule is left alone.
  void select_rule(long rule_id) const;
  /// Clicks a button.
  void press(int id) const { click(window_, id); }
  /// Notifies the dialog of a double click on a row; -1 is empty space.
  void double_click(int index) const;
  /// Notifies the dialog of a key that was pressed in the list.
  void key_down(WORD virtual_key) const;

  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(view(), message, wParam, lParam);
  }

 private:
  HWND window_;
};

}  // namespace test_support
