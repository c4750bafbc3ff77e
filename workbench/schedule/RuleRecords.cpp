#include "RuleRecords.h"

#include <algorithm>
#include <limits>

#include "Calendar.h"
#include "DateList.h"

namespace workbench::schedule {

namespace {

std::optional<std::int32_t> try_parse_number(std::string_view text) {
  const bool negative = text.starts_with('-');
  const std::string_view digits = text.substr(negative ? 1 : 0);
  if (digits.empty() || digits.size() > 10) return std::nullopt;
  std::int64_t number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + (digit - '0');
  }
  if (negative) number = -number;
  if (number < std::numeric_limits<std::int32_t>::min() || number > std::numeric_limits<std::int32_t>::max())
    return std::nullopt;
  return static_cast<std::int32_t>(number);
}

bool check_name(const std::string& name, std::size_t line, std::vector<Mistake>& mistakes) {
  const std::size_t length = utf16_length(name);
  if (length >= 1 && length <= longest_stored_name) return true;
  mistakes.push_back({line, MistakeKind::stored_name, {name}});
  return false;
}

}  // namespace

std::optional<NamedRule> try_read_rule(const CsvRecord& record, std::vector<Mistake>& mistakes) {
  NamedRule rule{record.fields.front(), {}};
  bool valid = check_name(rule.name, record.line, mistakes);
  for (std::size_t i = 0; i < rule_fields.size(); ++i) {
    const std::string& text = record.fields[i + 1];
    const std::optional<std::int32_t> number = try_parse_number(text);
    if (number) {
      rule.numbers.*rule_fields[i].value = *number;
    } else {
      mistakes.push_back({record.line, MistakeKind::number, {rule_fields[i].name, text}});
      valid = false;
    }
  }
  return valid ? std::optional(std::move(rule)) : std::nullopt;
}

std::optional<NamedSetting> try_read_setting(const CsvRecord& record, std::vector<Mistake>& mistakes) {
  const std::vector<std::string>& fields = record.fields;
  const std::string& last_day = fields[4];
  const std::size_t before = mistakes.size();
  check_name(fields[0], record.line, mistakes);
  if (!fields[1].empty()) check_name(fields[1], record.line, mistakes);
  if (!fields[2].empty() && !is_calendar_name(fields[2]))
    mistakes.push_back({record.line, MistakeKind::calendar_name, {fields[2]}});
  if (!are_month_letters(fields[3])) mistakes.push_back({record.line, MistakeKind::months, {fields[3]}});
  if (!last_day.empty() && last_day != "roll" && last_day != "expiration")
    mistakes.push_back({record.line, MistakeKind::last_trading_day, {last_day}});
  if (mistakes.size() > before) return std::nullopt;
  return NamedSetting{fields[0], fields[1], fields[2], fields[3], last_day == "expiration"};
}

std::vector<std::string> record_of(const NamedRule& rule) {
  std::vector<std::string> fields{rule.name};
  for (const RuleField& field : rule_fields) fields.push_back(std::to_string(rule.numbers.*field.value));
  return fields;
}

std::vector<std::string> record_of(const NamedSetting& setting) {
  return {setting.name, setting.rule, setting.calendar, setting.months,
          setting.last_day_is_expiration ? "expiration" : "roll"};
}

}  // namespace workbench::schedule
