#pragma once

#include <span>
#include <string>
#include <vector>

#include "Calendar.h"
#include "RuleFiles.h"
#include "ScheduleRow.h"
#include "TextTable.h"

namespace workbench::schedule {

/// A day on which the exchange is open in one calendar and closed in the other.
struct ChangedDay {
  Day day{};
  bool closed = false;   ///< whether it is closed now
  std::string reason{};  ///< why, as far as a calendar says it

  bool operator==(const ChangedDay&) const = default;
};

/// A contract whose dates are others than before.
struct ChangedDates {
  ScheduleRow before;
  ScheduleRow after;
};

/// The days that change when a calendar replaces another. Outside a calendar every day but the weekend counts as open.
std::vector<ChangedDay> changed_days(const Calendar& before, const Calendar& after);

/// What changes when a calendar is imported.
struct CalendarPlan {
  std::vector<ChangedDay> days{};
  /// For the settings that name the calendar, and for every contract month to which it has something to say, or had.
  /// Dates that become known or unknown are changed too.
  std::vector<ChangedDates> dates{};
  std::vector<Mistake> notes{};  ///< about the calendar as a whole, and none about a line
  bool is_same = false;          ///< the same calendar is there already
};

/// Plans the import of a calendar into a store with these calendars, rules and settings.
CalendarPlan plan_calendar(const Calendar& calendar, std::span<const Calendar> stored, std::span<const NamedRule> rules,
                           std::span<const NamedSetting> settings, const Progress& progress = {});

/// The columns day, change, reason.
TextTable table_of(const std::vector<ChangedDay>& days);

/// The columns rule, setting, contract, expiration_before, expiration, roll_before, roll.
TextTable table_of(const std::vector<ChangedDates>& dates);

}  // namespace workbench::schedule
