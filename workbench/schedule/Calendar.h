#pragma once

#include <string>
#include <vector>

#include "TradingDays.h"

namespace workbench::schedule {

/// A day on which the exchange is closed although it is not on the weekend.
struct ClosedDay {
  Day day{};
  std::string reason{};

  bool operator==(const ClosedDay&) const = default;
};

/// The closed days of an exchange. Texts are UTF-8 and may be empty, except the name.
struct Calendar {
  std::string name;
  std::string title{};
  std::string covers{};
  std::string source{};
  Day from{};  ///< the first day that the calendar knows
  Day to{};    ///< the last one
  WeekdaySet weekend = saturday_and_sunday;
  std::vector<ClosedDay> closed{};  ///< ascending, within `from` and `to`, none on the weekend

  bool operator==(const Calendar&) const = default;
};

/// Whether a calendar may have this name: 1 to 255 bytes, no control characters, and nothing that would be taken for
/// the name of a file.
bool is_calendar_name(std::string_view name);

/// Whether the name of a file ends like this, in upper or lower case. `ending` is in lower case.
bool has_ending(std::string_view name, std::string_view ending);

/// Whether this names a file, not a calendar: it holds a separator or ends in .csv, .json or .ics.
bool is_file_name(std::string_view name);

/// The key of the calendar file whose value no calendar may have, or null if the calendar is valid.
const char* find_invalid_key(const Calendar& calendar);

/// The index of the calendar's open days.
TradingDays trading_days(const Calendar& calendar);

}  // namespace workbench::schedule
