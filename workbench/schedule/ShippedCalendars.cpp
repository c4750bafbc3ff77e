#include "ShippedCalendars.h"

#include <optional>
#include <stdexcept>

#include "CalendarFile.h"
#include "ShippedCalendarsData.h"

namespace workbench::schedule {

std::vector<Calendar> shipped_calendars() {
  std::vector<Calendar> calendars;
  for (const std::string_view file : shipped_calendar_files) {
    CalendarReading reading = read_calendar(file);
    if (!reading.calendar) throw std::logic_error("a calendar of the program: " + describe(reading.mistakes.front()));
    calendars.push_back(std::move(*reading.calendar));
  }
  return calendars;
}

}  // namespace workbench::schedule
