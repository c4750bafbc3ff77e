#pragma once

#include <span>
#include <string>
#include <vector>

#include "Calendar.h"
#include "RuleFiles.h"
#include "ScheduleRow.h"

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

/// The days that change when a calendar takes the place of another. Outside a calendar every day but the weekend counts
/// as open.
std::vector<ChangedDay> changed_days(const Calendar& before, const Calendar& after);

/// The dates that change with it, for the settings that name the calendar and for every contract month to which one of
/// the calendars has something to say. Dates that become known or unknown are changed too.
std::vector<ChangedDates> changed_dates(const Calendar& before, const Calendar& after, std::span<const NamedRule> rules,
                                        std::span<const NamedSetting> settings);

}  // namespace workbench::schedule
