#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Calendar.h"
#include "Mistakes.h"
#include "Progress.h"

namespace workbench::schedule {

/// A calendar, or every mistake for which there is none, by line.
struct CalendarReading {
  std::optional<Calendar> calendar;
  std::vector<Mistake> mistakes;
};

/// Reads a calendar file: lines "# key: value", then a line of column names, then one closed day a line. UTF-8.
CalendarReading read_calendar(std::string_view bytes, const Progress& progress = {});

/// The calendar as such a file. Line breaks within its texts become spaces.
std::string write_calendar(const Calendar& calendar);

}  // namespace workbench::schedule
