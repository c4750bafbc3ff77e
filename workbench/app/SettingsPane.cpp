#include "SettingsPane.h"

#include <utility>

#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

enum Column : size_t { setting, rule, state };

constexpr ListColumn columns[] = {
    {IDS_COLUMN_SETTING, 256},
    {IDS_COLUMN_SETTING_RULE, 200},
    {IDS_COLUMN_SETTING_STATE, 140},
};

}  // namespace

SettingsPane::SettingsPane(HWND parent) : ListPane(parent, IDC_SETTINGS, IDS_SETTINGS_PANE, columns) {}

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
      return text(is_marked(row) ? IDS_RULE_MISSING : IDS_RULE_FOUND);
    default:
      return {};
  }
}

bool SettingsPane::is_marked(size_t row) const {
  const std::wstring& name = settings_[row].setting.rule_name;
  return !name.empty() && !rule_names_.contains(name);
}

}  // namespace workbench
