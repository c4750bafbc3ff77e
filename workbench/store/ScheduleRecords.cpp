#include "ScheduleRecords.h"

#include "Wtf8.h"

namespace workbench {

std::string to_schedule_text(std::wstring_view text) {
  // The store's form of a null is the only one that differs.
  constexpr std::string_view stored_null = "\xC0\x80";
  std::string bytes = to_wtf8(text);
  for (std::size_t at = bytes.find(stored_null); at != std::string::npos; at = bytes.find(stored_null, at + 1))
    bytes.replace(at, stored_null.size(), 1, '\0');
  return bytes;
}

std::wstring from_schedule_text(std::string_view bytes) { return from_wtf8(bytes); }

schedule::RuleNumbers to_rule_numbers(const Rule& rule) {
  schedule::RuleNumbers numbers;
  for (std::size_t i = 0; i < rule_columns.size(); ++i)
    numbers.*schedule::rule_fields[i].value = static_cast<std::int32_t>(rule.*rule_columns[i].value);
  return numbers;
}

schedule::NamedRule to_named(const Rule& rule) { return {to_schedule_text(rule.name), to_rule_numbers(rule)}; }

schedule::NamedSetting to_named(const SymbolSourceSetting& setting) {
  return {to_schedule_text(setting.name), to_schedule_text(setting.rule_name), to_schedule_text(setting.calendar),
          to_schedule_text(setting.months), setting.last_day_is_expiration};
}

NamedRecords load_named(RuleStore& store) {
  NamedRecords records;
  for (const StoredRule& stored : store.load_rules()) records.rules.push_back(to_named(stored.rule));
  for (const StoredSetting& stored : store.load_settings()) records.settings.push_back(to_named(stored.setting));
  for (StoredCalendar& stored : store.load_calendars()) records.calendars.push_back(std::move(stored.calendar));
  return records;
}

Rule from_named(const schedule::NamedRule& named) {
  Rule rule;
  rule.name = from_schedule_text(named.name);
  for (std::size_t i = 0; i < rule_columns.size(); ++i)
    rule.*rule_columns[i].value = named.numbers.*schedule::rule_fields[i].value;
  return rule;
}

SymbolSourceSetting from_named(const schedule::NamedSetting& setting) {
  return {from_schedule_text(setting.name), from_schedule_text(setting.rule), from_schedule_text(setting.calendar),
          from_schedule_text(setting.months), setting.last_day_is_expiration};
}

}  // namespace workbench
