#include "Dates.h"

namespace workbench::schedule {

namespace {

/// The number with leading zeros.
std::string padded(unsigned number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

}  // namespace

std::optional<int> try_parse_digits(std::string_view digits) {
  if (digits.empty() || digits.size() > 9) return std::nullopt;
  int number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + (digit - '0');
  }
  return number;
}

std::optional<Month> try_parse_month(std::string_view text) {
  if (text.size() != 7 || text[4] != '-') return std::nullopt;
  const std::optional<int> year = try_parse_digits(text.substr(0, 4));
  const std::optional<int> month = try_parse_digits(text.substr(5));
  if (!year || !month || *year < first_year || *year > last_year) return std::nullopt;
  const Month parsed{std::chrono::year{*year}, std::chrono::month{static_cast<unsigned>(*month)}};
  return parsed.ok() ? std::optional(parsed) : std::nullopt;
}

bool are_month_letters(std::string_view letters) {
  std::size_t next = 0;
  for (const char letter : letters) {
    const std::size_t month = month_letters.find(letter, next);
    if (month == std::string_view::npos) return false;
    next = month + 1;
  }
  return true;
}

std::optional<Day> try_parse_day(std::string_view text) {
  if (text.size() != 10 || text[7] != '-') return std::nullopt;
  const std::optional<Month> month = try_parse_month(text.substr(0, 7));
  const std::optional<int> day = try_parse_digits(text.substr(8));
  if (!month || !day) return std::nullopt;
  const std::chrono::year_month_day parsed = *month / std::chrono::day{static_cast<unsigned>(*day)};
  return parsed.ok() ? std::optional(Day{parsed}) : std::nullopt;
}

std::string to_text(Month month) {
  return padded(static_cast<unsigned>(static_cast<int>(month.year())), 4) + '-' +
         padded(static_cast<unsigned>(month.month()), 2);
}

std::string to_text(Day day) {
  const std::chrono::year_month_day date{day};
  return to_text(Month{date.year(), date.month()}) + '-' + padded(static_cast<unsigned>(date.day()), 2);
}

}  // namespace workbench::schedule
