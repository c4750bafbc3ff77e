#include "DialogScript.h"

#include <utility>

#include "RuleEditor.h"
#include "resource.h"

namespace test_support {

DialogScript::DialogScript(std::vector<Step> steps, Entry entry, std::wstring rule_to_delete,
                           std::function<void()> at_box)
    : steps_(std::move(steps)),
      entry_(std::move(entry)),
      rule_to_delete_(std::move(rule_to_delete)),
      at_box_(std::move(at_box)),
      driver_(DialogDriver::When::created, [this](HWND dialog, int number) { visit(dialog, number); }) {}

void DialogScript::visit(HWND dialog, int number) {
  if (is_rule_list(dialog)) {
    visit_list(dialog, number);
  } else if (is_rule_editor(dialog)) {
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
    send_click(list, IDCANCEL);
  }
}

void DialogScript::visit_editor(HWND editor, int number) {
  if (number == 1) ++editors_;
  if (number == 1 && item_text(editor, IDC_NAME) == entry_.shown) {
    RuleEditor(editor).fill(entry_.rule);
    if (entry_.before) entry_.before();
    send_click(editor, IDOK);
  } else if (number == 2 && !entry_.second_name.empty()) {
    SetDlgItemTextW(editor, IDC_NAME, entry_.second_name.c_str());
    send_click(editor, IDOK);
  } else {
    send_click(editor, IDCANCEL);
  }
}

void DialogScript::visit_box(HWND box, int number) {
  const bool is_question = GetDlgItem(box, IDYES) != nullptr;
  if (number == 1) ++(is_question ? questions_ : warnings_);
  const bool agrees =
      is_question && !rule_to_delete_.empty() && read_message_box(box).text.find(rule_to_delete_) != std::wstring::npos;
  if (number == 1 && at_box_) at_box_();
  if (is_question) {
    send_click(box, agrees ? IDYES : IDNO);
  } else {
    close_message_box(box);
  }
}

bool is_rule_editor(HWND dialog) { return GetDlgItem(dialog, IDC_OFFSET_SPIN) != nullptr; }

bool is_rule_list(HWND dialog) { return !is_rule_editor(dialog) && GetDlgItem(dialog, IDC_RULES_GROUP) != nullptr; }

}  // namespace test_support
