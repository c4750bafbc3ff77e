#include "SettingDialog.h"

#include <algorithm>
#include <utility>

#include "Dates.h"
#include "Texts.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {

namespace {

wchar_t month_letter(size_t month) { return static_cast<wchar_t>(schedule::month_letters.at(month)); }
int month_box(size_t month) { return IDC_SETTING_FIRST_MONTH + static_cast<int>(month); }

/// A first item for "none", then the names; a name that the setting has although it is not among them comes last.
void fill(HWND combo, UINT none, std::vector<std::wstring>& names, const std::wstring& chosen) {
  if (!chosen.empty() && std::ranges::find(names, chosen) == names.end()) names.push_back(chosen);
  add_item(combo, text(none));
  for (const std::wstring& name : names) add_item(combo, name);
  choose_item(combo, chosen.empty() ? 0 : static_cast<int>(std::ranges::find(names, chosen) - names.begin()) + 1);
}

std::wstring chosen_name(HWND combo, const std::vector<std::wstring>& names) {
  const int item = chosen_item(combo);
  return item > 0 ? names.at(static_cast<size_t>(item) - 1) : std::wstring();
}

}  // namespace

SettingDialog::SettingDialog(SymbolSourceSetting setting, Choices choices, Save save)
    : ModalDialog(IDD_SETTING), setting_(std::move(setting)), choices_(std::move(choices)), save_(std::move(save)) {}

void SettingDialog::on_init() {
  if (setting_.name.empty()) SetWindowTextW(handle(), text(IDS_NEW_SETTING).c_str());
  SendMessageW(control(IDC_SETTING_NAME), EM_LIMITTEXT, longest_name, 0);
  SetWindowTextW(control(IDC_SETTING_NAME), setting_.name.c_str());
  fill(control(IDC_SETTING_RULE), IDS_NO_RULE_CHOSEN, choices_.rules, setting_.rule_name);
  fill(control(IDC_SETTING_CALENDAR), IDS_NO_CALENDAR_CHOSEN, choices_.calendars, setting_.calendar);
  for (const UINT day : {IDS_COLUMN_ROLL, IDS_COLUMN_EXPIRATION}) add_item(control(IDC_SETTING_LAST_DAY), text(day));
  choose_item(control(IDC_SETTING_LAST_DAY), setting_.last_day_is_expiration ? 1 : 0);
  for (size_t month = 0; month < schedule::month_letters.size(); ++month) {
    const bool delivers = setting_.months.empty() || setting_.months.find(month_letter(month)) != std::wstring::npos;
    CheckDlgButton(handle(), month_box(month), delivers ? BST_CHECKED : BST_UNCHECKED);
  }
}

void SettingDialog::on_command(WORD id, WORD) {
  if (id == IDOK) save();
}

SymbolSourceSetting SettingDialog::entered() const {
  SymbolSourceSetting setting{.name = base::window_text(control(IDC_SETTING_NAME)),
                              .rule_name = chosen_name(control(IDC_SETTING_RULE), choices_.rules),
                              .calendar = chosen_name(control(IDC_SETTING_CALENDAR), choices_.calendars),
                              .last_day_is_expiration = chosen_item(control(IDC_SETTING_LAST_DAY)) == 1};
  for (size_t month = 0; month < schedule::month_letters.size(); ++month) {
    if (IsDlgButtonChecked(handle(), month_box(month))) setting.months += month_letter(month);
  }
  // All months are stored as an empty text. No month is stored so too: a setting without contracts would have no
  // schedule.
  if (setting.months.size() == schedule::month_letters.size()) setting.months.clear();
  return setting;
}

void SettingDialog::save() {
  const SymbolSourceSetting setting = entered();
  const std::wstring refusal = setting.name.empty() ? text(IDS_SETTING_WITHOUT_NAME) : save_(setting);
  if (refusal.empty()) {
    close(IDOK);
  } else {
    show_mistake(refusal, control(IDC_SETTING_NAME));
  }
}

}  // namespace workbench
