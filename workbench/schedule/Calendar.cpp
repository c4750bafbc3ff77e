#include "Calendar.h"

#include <algorithm>

#include "Ascii.h"
#include "Utf8.h"

namespace workbench::schedule {

bool has_ending(std::string_view name, std::string_view ending) {
  return name.size() >= ending.size() &&
         std::ranges::equal(name.substr(name.size() - ending.size()), ending, {}, to_ascii_lower);
}

bool is_file_name(std::string_view name) {
  return name.find_first_of("/\\") != std::string_view::npos || has_ending(name, ".csv") || has_ending(name, ".json") ||
         has_ending(name, ".ics");
}

bool is_calendar_name(std::string_view name) {
  const auto is_control = [](char unit) { return static_cast<unsigned char>(unit) < 0x20 || unit == 0x7F; };
  return !name.empty() && name.size() <= 255 && !is_file_name(name) && std::ranges::none_of(name, is_control) &&
         !find_invalid_utf8(name);
}

const char* find_invalid_key(const Calendar& calendar) {
  const auto is_supported = [](Day day) {
    const int year = static_cast<int>(std::chrono::year_month_day(day).year());
    return year >= first_year && year <= last_year;
  };
  if (!is_calendar_name(calendar.name)) return "name";
  if (find_invalid_utf8(calendar.title)) return "title";
  if (find_invalid_utf8(calendar.covers)) return "covers";
  if (find_invalid_utf8(calendar.source)) return "source";
  if (!is_supported(calendar.from)) return "from";
  if (!is_supported(calendar.to) || calendar.to < calendar.from) return "to";
  if (calendar.weekend >= every_weekday) return "weekend";
  const ClosedDay* last = nullptr;
  for (const ClosedDay& closed : calendar.closed) {
    if (closed.day < calendar.from || closed.day > calendar.to || contains(calendar.weekend, closed.day) ||
        (last && closed.day <= last->day))
      return "date";
    if (find_invalid_utf8(closed.reason)) return "reason";
    last = &closed;
  }
  return nullptr;
}

TradingDays trading_days(const Calendar& calendar) {
  std::vector<Day> closed;
  closed.reserve(calendar.closed.size());
  for (const ClosedDay& day : calendar.closed) closed.push_back(day.day);
  return {calendar.from, calendar.to, calendar.weekend, closed};
}

}  // namespace workbench::schedule
