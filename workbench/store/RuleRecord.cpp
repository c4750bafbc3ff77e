#include "RuleRecord.h"

#include "Dates.h"
#include "StoreError.h"
#include "Wtf8.h"

namespace workbench {

namespace {

[[noreturn]] void refuse(const std::string& field, const std::string& found, const std::string& expected) {
  throw StoreError(StoreErrorKind::invalid_value, std::wstring(field.begin(), field.end()),
                   field + " is " + found + " and must be " + expected);
}

void refuse_length(const char* field, std::size_t length, std::size_t least) {
  if (length >= least && length <= longest_name) return;
  refuse(field, std::to_string(length) + " long", std::to_string(least) + " to " + std::to_string(longest_name));
}

}  // namespace

void refuse_invalid(const Rule& rule) {
  refuse_length("RuleName", rule.name.size(), 1);
  for (const RuleColumn& column : rule_columns) {
    const long value = rule.*column.value;
    if (value < column.least || value > column.greatest)
      refuse(column.name, std::to_string(value),
             std::to_string(column.least) + " to " + std::to_string(column.greatest));
  }
}

void refuse_invalid(const SymbolSourceSetting& setting) {
  refuse_length("SettingName", setting.name.size(), 1);
  refuse_length("RuleName", setting.rule_name.size(), 0);
  const std::string calendar = to_wtf8(setting.calendar);
  if (!calendar.empty() && !schedule::is_calendar_name(calendar)) refuse("Calendar", calendar, "a calendar's name");
  const std::string months = to_wtf8(setting.months);
  if (!schedule::are_month_letters(months)) refuse("Months", months, "letters of months in their order");
}

void refuse_invalid(const StoredCalendar& stored) {
  if (const char* key = schedule::find_invalid_key(stored.calendar)) refuse(key, "invalid", "that of a calendar");
  if (stored.shipped_version < 0) refuse("ShippedVersion", std::to_string(stored.shipped_version), "0 or more");
}

}  // namespace workbench
