#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace workbench::schedule {

using Day = std::chrono::sys_days;
using Month = std::chrono::year_month;

/// The years that calendars and contracts may lie in. The bound keeps the index of a calendar small.
inline constexpr int first_year = 1900;
inline constexpr int last_year = 2199;

/// The letters with which exchanges name the months from January to December.
inline constexpr std::string_view month_letters = "FGHJKMNQUVXZ";

/// Whether these are letters of different delivery months, in the order of the months.
bool are_month_letters(std::string_view letters);

/// The day that this text names in the form 2026-01-16, unless it is no day of a supported year.
std::optional<Day> try_parse_day(std::string_view text);

/// The month that this text names in the form 2026-01, unless it is no month of a supported year.
std::optional<Month> try_parse_month(std::string_view text);

/// The day in the form 2026-01-16.
std::string to_text(Day day);

/// The month in the form 2026-01.
std::string to_text(Month month);

/// The number that these decimal digits write, unless there is another character or none at all. At most nine digits.
std::optional<int> try_parse_digits(std::string_view digits);

}  // namespace workbench::schedule
