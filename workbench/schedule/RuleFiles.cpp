#include "RuleFiles.h"

#include <algorithm>

#include "Ascii.h"
#include "CsvTable.h"
#include "RuleRecords.h"
#include "TextTable.h"
#include "Utf8.h"

namespace workbench::schedule {

namespace {

template <std::size_t count>
std::vector<std::string> names_of(const std::array<std::string_view, count>& columns) {
  return {columns.begin(), columns.end()};
}

template <class Item, std::size_t count>
std::optional<std::string> write_csv(std::span<const Item> items, const std::array<std::string_view, count>& columns,
                                     std::string& refused, const Progress& progress) {
  std::string text;
  append_csv(text, names_of(columns));
  for (std::size_t i = 0; i < items.size(); ++i) {
    advance(progress, i, items.size());
    const std::vector<std::string> fields = record_of(items[i]);
    const auto invalid =
        std::ranges::find_if(fields, [](const std::string& field) { return find_invalid_utf8(field).has_value(); });
    if (invalid != fields.end()) {
      refused = *invalid;
      return std::nullopt;
    }
    append_csv(text, fields);
  }
  return text;
}

/// One object. With `numbers`, every field but the first is written as a number.
template <std::size_t count>
std::string json_object(const std::array<std::string_view, count>& columns, const std::vector<std::string>& fields,
                        bool numbers) {
  std::string text = "{";
  for (std::size_t i = 0; i < count; ++i) {
    text += (i == 0 ? "" : ", ") + json_string(columns[i]) + ": ";
    text += numbers && i > 0 ? fields[i] : json_string(fields[i]);
  }
  return text + '}';
}

template <class Item, std::size_t count>
std::string json_array(std::string_view name, std::span<const Item> items,
                       const std::array<std::string_view, count>& columns, bool numbers, const Progress& progress) {
  std::string text = "\n  " + json_string(name) + ": [";
  for (std::size_t i = 0; i < items.size(); ++i) {
    advance(progress, i, items.size());
    text += (i == 0 ? "\n    " : ",\n    ") + json_object(columns, record_of(items[i]), numbers);
  }
  return text + "\n  ]";
}

}  // namespace

RuleFile read_rules_csv(std::string_view bytes, const Progress& progress) {
  CsvTable table = read_csv_table(bytes, rule_columns, progress);
  RuleFile file{std::vector<Lined<NamedRule>>{}, std::nullopt, std::move(table.mistakes),
                std::move(table.ignored_columns)};
  for (const CsvRecord& row : table.rows) {
    if (std::optional<NamedRule> rule = try_read_rule(row, file.mistakes))
      file.rules->push_back({row.line, std::move(*rule)});
  }
  std::ranges::stable_sort(file.mistakes, {}, &Mistake::line);
  return file;
}

RuleFile read_settings_csv(std::string_view bytes, const Progress& progress) {
  CsvTable table = read_csv_table(bytes, setting_columns, progress);
  RuleFile file{std::nullopt, std::vector<Lined<NamedSetting>>{}, std::move(table.mistakes),
                std::move(table.ignored_columns)};
  for (const CsvRecord& row : table.rows) {
    if (std::optional<NamedSetting> setting = try_read_setting(row, file.mistakes))
      file.settings->push_back({row.line, std::move(*setting)});
  }
  std::ranges::stable_sort(file.mistakes, {}, &Mistake::line);
  return file;
}

std::optional<std::string> write_rules_csv(std::span<const NamedRule> rules, std::string& refused,
                                           const Progress& progress) {
  return write_csv(rules, rule_columns, refused, progress);
}

std::optional<std::string> write_settings_csv(std::span<const NamedSetting> settings, std::string& refused,
                                              const Progress& progress) {
  return write_csv(settings, setting_columns, refused, progress);
}

std::string write_rules_json(std::optional<std::span<const NamedRule>> rules,
                             std::optional<std::span<const NamedSetting>> settings, const Progress& progress) {
  std::string text = "{";
  if (rules) text += json_array("rules", *rules, rule_columns, true, part_of(progress, 0, 50));
  if (rules && settings) text += ',';
  if (settings) text += json_array("settings", *settings, setting_columns, false, part_of(progress, 50, 100));
  return text + "\n}\n";
}

std::size_t utf16_length(std::string_view name) {
  std::size_t length = 0;
  for (const char unit : name) {
    const auto byte = static_cast<unsigned char>(unit);
    if ((byte & 0xC0U) != 0x80U) length += byte >= 0xF0 ? 2 : 1;
  }
  return length;
}

bool is_edited_name(std::string_view name) {
  const auto is_allowed = [](char unit) {
    return is_ascii_letter(unit) || is_ascii_digit(unit) || unit == '*' || unit == ' ' ||
           (unit >= '\t' && unit <= '\r');
  };
  return !name.empty() && name.size() <= longest_edited_name && std::ranges::all_of(name, is_allowed);
}

}  // namespace workbench::schedule
