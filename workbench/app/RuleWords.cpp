#include "RuleWords.h"

#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr long last_occurrence = 5;

/// The text of one of the values that follow one another in the string table.
std::wstring value_text(UINT first, long value) { return text(first + static_cast<UINT>(value)); }

std::wstring weekday_in_words(const Rule& rule) {
  const std::wstring month = value_text(IDS_PREVIOUS_MONTH, rule.weekday_month);
  const std::wstring weekday = value_text(IDS_SUNDAY, rule.weekday);
  if (rule.week_ordinal == last_occurrence) return text(IDS_LAST_WEEKDAY_OF_MONTH, {month, weekday});
  return text(IDS_WEEKDAY_OF_MONTH, {month, std::to_wstring(rule.week_ordinal), weekday});
}

}  // namespace

std::wstring offset_in_words(const Rule& rule) {
  if (rule.roll_offset == 0) return text(IDS_NO_OFFSET);
  return text(IDS_OFFSET_TRADING_DAYS + static_cast<UINT>(rule.day_type), {std::to_wstring(rule.roll_offset)});
}

std::wstring day_in_words(const Rule& rule) {
  if (rule.day_mode != 0) return weekday_in_words(rule);
  return text(IDS_DAY_OF_MONTH, {value_text(IDS_PREVIOUS_MONTH, rule.day_month), std::to_wstring(rule.day_of_month)});
}

std::wstring move_in_words(const Rule& rule) { return value_text(IDS_NOT_MOVED, rule.move_to_next_trading_day); }

}  // namespace workbench
