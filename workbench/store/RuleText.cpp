#include "RuleText.h"

#include <cstdio>

namespace workbench {

namespace {

bool is_pair(const std::wstring& text, std::size_t index) {
  return index + 1 < text.size() && (text[index] & 0xFC00) == 0xD800 && (text[index + 1] & 0xFC00) == 0xDC00;
}

bool is_printable(wchar_t unit) { return unit >= 0x20 && unit != 0x7F && (unit & 0xF800) != 0xD800; }

std::wstring escaped(const std::wstring& text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (is_pair(text, i)) {
      result += text.substr(i++, 2);
    } else if (text[i] == L'\\') {
      result += L"\\\\";
    } else if (is_printable(text[i])) {
      result += text[i];
    } else {
      wchar_t code[8];
      _snwprintf(code, std::size(code), L"\\u%04X", static_cast<unsigned>(text[i]));
      result += code;
    }
  }
  return result;
}

}  // namespace

std::vector<std::wstring> rules_as_lines(const std::vector<StoredRule>& rules) {
  std::vector<std::wstring> lines{L"RuleID\tRuleName"};
  for (const RuleColumn& column : rule_columns) {
    const std::string name = column.name;
    lines.front() += L'\t' + std::wstring(name.begin(), name.end());
  }
  for (const StoredRule& stored : rules) {
    std::wstring line = std::to_wstring(stored.number) + L'\t' + escaped(stored.rule.name);
    for (const RuleColumn& column : rule_columns) line += L'\t' + std::to_wstring(stored.rule.*column.value);
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<std::wstring> settings_as_lines(const std::vector<SymbolSourceSetting>& settings) {
  std::vector<std::wstring> lines{L"SettingName\tRuleName"};
  for (const SymbolSourceSetting& setting : settings)
    lines.push_back(escaped(setting.name) + L'\t' + escaped(setting.rule_name));
  return lines;
}

}  // namespace workbench
