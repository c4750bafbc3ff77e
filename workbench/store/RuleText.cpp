#include "RuleText.h"

#include "EscapedText.h"

namespace workbench {

std::vector<std::wstring> rules_as_lines(const std::vector<StoredRule>& rules) {
  std::vector<std::wstring> lines{L"RuleID\tRuleName"};
  for (const RuleColumn& column : rule_columns) {
    const std::string name = column.name;
    lines.front() += L'\t' + std::wstring(name.begin(), name.end());
  }
  for (const StoredRule& stored : rules) {
    std::wstring line = std::to_wstring(stored.number) + L'\t' + to_escaped_text(stored.rule.name);
    for (const RuleColumn& column : rule_columns) line += L'\t' + std::to_wstring(stored.rule.*column.value);
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<std::wstring> settings_as_lines(const std::vector<SymbolSourceSetting>& settings) {
  std::vector<std::wstring> lines{L"SettingName\tRuleName"};
  for (const SymbolSourceSetting& setting : settings)
    lines.push_back(to_escaped_text(setting.name) + L'\t' + to_escaped_text(setting.rule_name));
  return lines;
}

}  // namespace workbench
