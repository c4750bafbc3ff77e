#include "RuleEditor.h"

#include <gtest/gtest.h>

#include "Input.h"

namespace test_support {

long RuleEditor::chosen(int combo) const {
  return static_cast<long>(
      SendDlgItemMessageW(window_, combo, CB_GETITEMDATA, static_cast<WPARAM>(selection(combo)), 0));
}

DWORD RuleEditor::caret(int edit) const {
  DWORD start = 0;
  DWORD end = 0;
  SendDlgItemMessageW(window_, edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(start, end) << "something is selected";
  return end;
}

void RuleEditor::choose(int combo, int index) const {
  SendDlgItemMessageW(window_, combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageW(window_, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(item(combo)));
}

void RuleEditor::choose_data(int combo, long data) const {
  const std::vector<LRESULT> all = combo_data(item(combo));
  for (std::size_t index = 0; index < all.size(); ++index) {
    if (all[index] == data) choose(combo, static_cast<int>(index));
  }
}

void RuleEditor::enter(int edit, const std::wstring& text) const {
  SetFocus(item(edit));
  SendDlgItemMessageW(window_, edit, EM_SETSEL, 0, -1);
  if (text.empty()) {
    test_support::press(VK_DELETE);
  } else {
    type(text);
  }
}

void RuleEditor::fill(const HostRule& rule) const {
  SetDlgItemTextW(window_, IDC_NAME, rule.name.c_str());
  SendDlgItemMessageW(window_, IDC_OFFSET_SPIN, UDM_SETPOS, 0, rule.roll_offset);
  const int mode = rule.day_mode == 0 ? IDC_DAY_OF_MONTH_MODE : IDC_WEEKDAY_MODE;
  CheckRadioButton(window_, IDC_DAY_OF_MONTH_MODE, IDC_WEEKDAY_MODE, mode);
  send_click(window_, mode);
  choose_data(IDC_DAY_TYPE, rule.day_type);
  choose_data(IDC_DAY_OF_MONTH, rule.day_of_month);
  choose_data(IDC_DAY_MONTH, rule.day_month);
  choose_data(IDC_WEEK_ORDINAL, rule.week_ordinal);
  choose_data(IDC_WEEKDAY, rule.weekday);
  choose_data(IDC_WEEKDAY_MONTH, rule.weekday_month);
  CheckDlgButton(window_, IDC_MOVE_TO_NEXT_TRADING_DAY,
                 rule.move_to_next_trading_day == 1 ? BST_CHECKED : BST_UNCHECKED);
  send_click(window_, IDC_MOVE_TO_NEXT_TRADING_DAY);
}

void RuleEditor::click_spin(LONG quarters_from_top, int times) const {
  HWND spin = item(IDC_OFFSET_SPIN);
  RECT area = {};
  GetClientRect(spin, &area);
  for (int count = 0; count < times; ++count) click_at(spin, {area.right / 2, area.bottom * quarters_from_top / 4});
}

}  // namespace test_support
