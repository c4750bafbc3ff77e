#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Calendar.h"
#include "ContractDates.h"
#include "Mistakes.h"
#include "ShippedCalendars.h"

namespace workbench::schedule {

/// The day of this text, which must be one.
inline Day day(std::string_view text) { return try_parse_day(text).value(); }
inline Month month(std::string_view text) { return try_parse_month(text).value(); }

/// Days as texts, since tests are read by people.
inline std::string text_of(const ContractDay& day) { return day.date ? to_text(*day.date) : std::string(); }

/// The columns of a file of rules.
inline const std::string rule_columns =
    "RuleName,RollOffset,DayType,DayMode,DayOfMonth,DayMonth,WeekOrdinal,Weekday,WeekdayMonth,MoveToNextTradingDay";

/// The columns of a file of settings.
inline const std::string setting_columns = "SettingName,RuleName,Calendar,Months,LastTradingDay";

/// ASCII as UTF-16, without a byte order mark.
inline std::string utf16(std::string_view ascii, bool big_endian = false) {
  std::string bytes;
  for (const char unit : ascii) bytes.append(big_endian ? 1 : 0, '\0').append(1, unit).append(big_endian ? 0 : 1, '\0');
  return bytes;
}

/// The messages about a file of this name, a line each.
inline std::string messages_of(const std::vector<Mistake>& mistakes, const char* file = "f") {
  std::string lines;
  for (const Mistake& mistake : mistakes) lines += describe(file, mistake) + "\n";
  return lines;
}

/// The text with one piece of it replaced.
inline std::string with(std::string text, std::string_view piece, std::string_view replacement) {
  return text.replace(text.find(piece), piece.size(), replacement);
}

/// The shipped calendar of this name.
inline const Calendar& shipped(std::string_view name) {
  static const std::vector<Calendar> calendars = shipped_calendars();
  for (const Calendar& calendar : calendars) {
    if (calendar.name == name) return calendar;
  }
  throw std::out_of_range(std::string(name));
}

/// The trading days of mainland China.
inline const TradingDays& china() {
  static const TradingDays days = trading_days(shipped("china-futures"));
  return days;
}

/// The closed days of the shipped calendar of this name.
inline std::vector<Day> shipped_days(std::string_view name) {
  std::vector<Day> days;
  for (const ClosedDay& closed : shipped(name).closed) days.push_back(closed.day);
  return days;
}

/// Where a rule counts its day: a month before or after the contract month, or that month.
enum MonthOf { previous_month, current_month, next_month };
enum DayUnit { in_trading_days, in_calendar_days };

/// A rule for a day of a month, without offset.
inline RuleNumbers on_day(int day_of_month, MonthOf month = current_month, bool to_next = false) {
  return {.day_of_month = day_of_month, .day_month = month, .move_to_next_trading_day = to_next};
}

/// A rule for a weekday of a month, without offset.
inline RuleNumbers on_weekday(int ordinal, int weekday, MonthOf month = current_month, bool to_next = false) {
  return {.day_mode = 1,
          .week_ordinal = ordinal,
          .weekday = weekday,
          .weekday_month = month,
          .move_to_next_trading_day = to_next};
}

/// The rule with its roll day this many days earlier.
inline RuleNumbers less(RuleNumbers rule, int offset, DayUnit unit) {
  rule.roll_offset = offset;
  rule.day_type = unit;
  return rule;
}

}  // namespace workbench::schedule
