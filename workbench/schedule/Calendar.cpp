#include "Calendar.h"

#include <algorithm>

#include "Utf8.h"

namespace workbench::schedule {

bool is_file_name(std::string_view name) {
  return name.find_first_of("/\\") != std::string_view::npos || name.ends_with(".csv") || name.ends_with(".json") ||
         name.ends_with(".ics");
}

bool is_calendar_name(std::string_view name) {
  const auto is_control = [](char unit) { return static_cast<unsigned char>(unit) < 0x20 || unit == 0x7F; };
  return !name.empty() && name.size() <= 255 && !is_file_name(name) && std::ranges::none_of(name, is_control) &&
         !find_invalid_utf8(name);
}

TradingDays trading_days(const Calendar& calendar) {
  std::vector<Day> closed;
  closed.reserve(calendar.closed.size());
  for (const ClosedDay& day : calendar.closed) closed.push_back(day.day);
  return {calendar.from, calendar.to, calendar.weekend, closed};
}

}  // namespace workbench::schedule
