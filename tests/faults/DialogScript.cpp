#include "DialogScript.h"

#include <windows.h>
#include <commctrl.h>

#include <utility>

#include "DialogDriver.h"
#include "resource.h"

namespace faults_test {
namespace {

using test_support::item_text;

HWND list_view(HWND list) { return GetDlgItem(list, IDC_RULES_LIST); }

bool is_editor(HWND dialog) { return GetDlgItem(dialog, IDC_OFFSET_SPIN) != nullptr; }
bool is_list(HWND dialog) { return !is_editor(dialog) && GetDlgItem(dialog, IDC_RULES_GROUP) != nullptr; }

/// Chooses the item with this data, if there is one.
void choose(HWND editor, int combo, long data) {
  const LRESULT count = SendDlgItemMessageW(editor, combo, CB_GETCOUNT, 0, 0);
  for (LRESULT item = 0; item < count; ++item) {
    if (SendDlgItemMessageW(editor, combo, CB_GETITEMDATA, static_cast<WPARAM>(item), 0) != data) continue;
    SendDlgItemMessageW(editor, combo, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(editor, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(editor, combo)));
  }
}

/// The text of a message box: that of its only text control or, where the box has an edit, of that.
std::wstring box_text(HWND box) {
  std::wstring text;
  for (HWND part = GetWindow(box, GW_CHILD); part; part = GetWindow(part, GW_HWNDNEXT)) {
    text += test_support::window_text(part);
  }
  return text;
}

}  // namespace

DialogScript::DialogScript(std::vector<Step> steps, Entry entry, std::wstring rule_to_delete)
    : steps_(std::move(steps)),
      entry_(std::move(entry)),
      rule_to_delete_(std::move(rule_to_delete)),
      visitor_([this](HWND dialog, int number) { visit(dialog, number); }) {}

void DialogScript::visit(HWND dialog, int number) {
  if (is_list(dialog)) {
    visit_list(dialog, number);
  } else if (is_editor(dialog)) {
    visit_editor(dialog, number);
  } else {
    visit_box(dialog, number);
  }
}

void DialogScript::visit_list(HWND list, int number) {
  if (number == 1) ++lists_;
  if (next_step_ < steps_.size()) {
    steps_[next_step_++](list);
  } else {
    press(list, IDCANCEL);
  }
}

void DialogScript::visit_editor(HWND editor, int number) {
  if (number == 1) ++editors_;
  if (number == 1 && item_text(editor, IDC_NAME) == entry_.shown) {
    enter(editor);
    if (entry_.before) entry_.before();
    press(editor, IDOK);
  } else if (number == 2 && !entry_.second_name.empty()) {
    SetDlgItemTextW(editor, IDC_NAME, entry_.second_name.c_str());
    press(editor, IDOK);
  } else {
    press(editor, IDCANCEL);
  }
}

void DialogScript::enter(HWND editor) const {
  const test_support::HostRule& rule = entry_.rule;
  SetDlgItemTextW(editor, IDC_NAME, rule.name->c_str());
  SendDlgItemMessageW(editor, IDC_OFFSET_SPIN, UDM_SETPOS, 0, rule.roll_offset);
  const int mode = rule.day_mode == 0 ? IDC_DAY_OF_MONTH_MODE : IDC_WEEKDAY_MODE;
  CheckRadioButton(editor, IDC_DAY_OF_MONTH_MODE, IDC_WEEKDAY_MODE, mode);
  press(editor, mode);
  choose(editor, IDC_DAY_TYPE, rule.day_type);
  choose(editor, IDC_DAY_OF_MONTH, rule.day_of_month);
  choose(editor, IDC_DAY_MONTH, rule.day_month);
  choose(editor, IDC_WEEK_ORDINAL, rule.week_ordinal);
  choose(editor, IDC_WEEKDAY, rule.weekday);
  choose(editor, IDC_WEEKDAY_MONTH, rule.weekday_month);
  CheckDlgButton(editor, IDC_MOVE_TO_NEXT_TRADING_DAY,
                 rule.move_to_next_trading_day == 1 ? BST_CHECKED : BST_UNCHECKED);
  press(editor, IDC_MOVE_TO_NEXT_TRADING_DAY);
}

void DialogScript::visit_box(HWND box, int number) {
  const bool is_question = GetDlgItem(box, IDYES) != nullptr;
  if (number == 1) ++(is_question ? questions_ : warnings_);
  const bool agrees = !rule_to_delete_.empty() && box_text(box).find(rule_to_delete_) != std::wstring::npos;
  if (is_question) {
    press(box, agrees ? IDYES : IDNO);
  } else {
    press(box, GetDlgCtrlID(FindWindowExW(box, nullptr, L"Button", nullptr)));
  }
}

void press(HWND dialog, int button) {
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

int shown_rules(HWND list) { return static_cast<int>(SendMessageW(list_view(list), LVM_GETITEMCOUNT, 0, 0)); }

void select_rule(HWND list, long rule_id) {
  const int count = shown_rules(list);
  for (int index = 0; index < count; ++index) {
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = index;
    SendMessageW(list_view(list), LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    if (item.lParam != rule_id) continue;
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(list_view(list), LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
  }
}

}  // namespace faults_test
