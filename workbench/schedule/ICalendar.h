#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CalendarFile.h"

namespace workbench::schedule {

/// What an iCalendar file says nothing about: the name and the days for which its events are complete.
struct CalendarScope {
  std::string name;
  Day from{};
  Day to{};  ///< not before `from`
};

/// A calendar whose closed days are the all-day events of an iCalendar file, on each day from their start to their end.
/// Days on Saturday and Sunday, outside the scope and of cancelled events are left out; a day of several events is
/// listed once, with the first reason. Events that repeat or are not all-day are mistakes, and so is a file without a
/// single event.
CalendarReading read_icalendar(std::string_view bytes, const CalendarScope& scope, const Progress& progress = {});

/// Whether this looks like an iCalendar file rather than a calendar file, whatever its encoding.
bool is_icalendar(std::string_view bytes);

/// Appends one content line of an iCalendar file, folded at 75 bytes, ended with CR LF. `value` must be escaped.
void append_icalendar_line(std::string& text, std::string_view name, std::string_view value);

/// A text as the value of a property: backslash, comma, semicolon and line breaks are escaped, other control
/// characters left out.
std::string icalendar_text(std::string_view text);

}  // namespace workbench::schedule
