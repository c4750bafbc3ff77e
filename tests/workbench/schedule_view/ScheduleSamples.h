#pragma once

#include "ScheduleModel.h"

namespace workbench {

using schedule::Day;
using schedule::Month;
using schedule::to_text;
using std::chrono::month;
using std::chrono::year;

constexpr Day day(int y, unsigned m, unsigned d) { return Day{year{y} / month{m} / std::chrono::day{d}}; }
constexpr Month contract(int y, unsigned m) { return year{y} / month{m}; }

/// The third Friday of the month, moved to the next trading day.
inline schedule::RuleNumbers third_friday() {
  return {.day_mode = 1, .week_ordinal = 3, .weekday = 5, .move_to_next_trading_day = 1};
}

/// A calendar of 2025 and 2026 with two days off in February 2026.
inline schedule::Calendar sample_calendar(const std::string& name = "sample") {
  return {.name = name,
          .from = day(2025, 1, 1),
          .to = day(2026, 12, 31),
          .closed = {{day(2026, 2, 19), "New Year"}, {day(2026, 2, 20), "New Year"}}};
}

/// Two settings of one rule, and a rule that no setting uses.
inline ScheduleData sample_data() {
  return {.rules = {{1, {"index", third_friday()}}, {2, {"spare", {.day_of_month = 15}}}},
          .settings = {{1, {.name = "IF", .rule = "index", .calendar = "sample"}},
                       {2, {.name = "quarterly", .rule = "index", .calendar = "sample", .months = "HMUZ"}}},
          .calendars = {sample_calendar()}};
}

inline ScheduleChoice choice_of_setting(long number) { return {.setting = number, .first = contract(2026, 1)}; }

}  // namespace workbench
