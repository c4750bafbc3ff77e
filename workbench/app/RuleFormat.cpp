#include "RuleFormat.h"

#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr long last_occurrence = 5;

/// The text of one of the `count` values that follow one another in the string table.
std::wstring value_text(UINT first, long count, long value) {
  return text(value >= 0 && value < count ? first + static_cast<UINT>(value) : IDS_NOT_CHOSEN);
}

std::wstring month_text(long value) { return value_text(IDS_PREVIOUS_MONTH, 3, value); }

std::wstring ordinal_text(long value) { return value > 0 ? std::to_wstring(value) : text(IDS_NOT_CHOSEN); }

std::wstring format_weekday(const Rule& rule) {
  const std::wstring month = month_text(rule.weekday_month);
  const std::wstring weekday = value_text(IDS_SUNDAY, 7, rule.weekday);
  if (rule.week_ordinal == last_occurrence) return text(IDS_LAST_WEEKDAY_OF_MONTH, {month, weekday});
  return text(IDS_WEEKDAY_OF_MONTH, {month, ordinal_text(rule.week_ordinal), weekday});
}

}  // namespace

std::wstring format_offset(const Rule& rule) {
  if (rule.roll_offset == 0) return text(IDS_NO_OFFSET);
  const UINT unit = rule.day_type == 0 ? IDS_OFFSET_TRADING_DAYS : IDS_OFFSET_CALENDAR_DAYS;
  return text(unit, {std::to_wstring(rule.roll_offset)});
}

std::wstring format_rule_day(const Rule& rule) {
  if (rule.day_mode != 0) return format_weekday(rule);
  return text(IDS_DAY_OF_MONTH, {month_text(rule.day_month), ordinal_text(rule.day_of_month)});
}

std::wstring format_move(const Rule& rule) { return value_text(IDS_NOT_MOVED, 2, rule.move_to_next_trading_day); }

}  // namespace workbench
