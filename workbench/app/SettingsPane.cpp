#include "SettingsPane.h"

#include <utility>

#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

enum SettingsPaneColumn : size_t { setting, rule, state, calendar, months, last_day };

constexpr ListColumn settings_pane_columns[] = {
    {IDS_COLUMN_SETTING, 166},          {IDS_COLUMN_SETTING_RULE, 160},  {IDS_COLUMN_SETTING_STATE, 84},
    {IDS_COLUMN_SETTING_CALENDAR, 120}, {IDS_COLUMN_SETTING_MONTHS, 84}, {IDS_COLUMN_SETTING_LAST_DAY, 84},
};

}  // namespace

SettingsPane::SettingsPane(HWND parent) : ListPane(parent, IDC_SETTINGS, IDS_SETTINGS_PANE, settings_pane_columns) {}

void SettingsPane::show(std::vector<StoredSetting> settings, const std::vector<StoredRule>& rules) {
  const int selected = focused_row();
  settings_ = std::move(settings);
  rule_names_.clear();
  for (const StoredRule& stored : rules) rule_names_.insert(stored.rule.name);
  show_rows(settings_.size(), selected);
}

std::wstring SettingsPane::cell(size_t row, size_t column) const {
  switch (column) {
    case setting:
      return settings_[row].setting.name;
    case rule:
      return settings_[row].setting.rule_name;
    case state:
      if (settings_[row].setting.rule_name.empty()) return text(IDS_NO_RULE);
      return text(rule_is_missing(row) ? IDS_RULE_MISSING : IDS_RULE_FOUND);
    case calendar:
      return settings_[row].setting.calendar;
    case months:
      return settings_[row].setting.months.empty() ? text(IDS_EVERY_MONTH) : settings_[row].setting.months;
    case last_day:
      return text(settings_[row].setting.last_day_is_expiration ? IDS_COLUMN_EXPIRATION : IDS_COLUMN_ROLL);
    default:
      return {};
  }
}

std::optional<COLORREF> SettingsPane::row_color(size_t row) const {
  return rule_is_missing(row) ? std::optional(marked_row_color) : std::nullopt;
}

long SettingsPane::number_at(int row) const {
  return row >= 0 && static_cast<size_t>(row) < settings_.size() ? settings_[static_cast<size_t>(row)].number : 0;
}

bool SettingsPane::rule_is_missing(size_t row) const {
  const std::wstring& name = settings_[row].setting.rule_name;
  return !name.empty() && !rule_names_.contains(name);
}

}  // namespace workbench
