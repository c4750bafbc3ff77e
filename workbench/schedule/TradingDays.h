#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "Dates.h"

namespace workbench::schedule {

/// Days of the week, bit 0 for Sunday.
using WeekdaySet = std::uint8_t;
inline constexpr WeekdaySet saturday_and_sunday = 0b1000001;
inline constexpr WeekdaySet every_weekday = 0b1111111;

inline bool contains(WeekdaySet set, Day day) { return (set >> std::chrono::weekday{day}.c_encoding() & 1U) != 0; }

/// The open days of an exchange, numbered so that a day is found from its number, and a number from its day, in
/// constant time. Number 0 is the first open day of the calendar. Outside the calendar every day but the weekend counts
/// as open; callers decide whether they accept such an estimate.
class TradingDays {
 public:
  /// The calendar knows the days `from` to `to`, both included. `closed` are its closed days besides the weekend, in
  /// any order; those outside the calendar do not count. `weekend` must leave a day of the week.
  TradingDays(Day from, Day to, WeekdaySet weekend, std::span<const Day> closed);

  Day from() const { return from_; }
  Day to() const { return to_; }
  bool covers(Day day) const { return from_ <= day && day <= to_; }

  /// Days of the weekend are closed.
  bool is_weekend(Day day) const { return contains(weekend_, day); }
  bool is_open(Day day) const { return number_at(day + std::chrono::days{1}) > number_at(day); }

  /// The number of the first open day that is not before `day`.
  std::int64_t number_at(Day day) const;

  /// The open day with this number.
  Day day_at(std::int64_t number) const;

 private:
  std::int64_t weekdays_before(Day day) const;
  Day nth_weekday(std::int64_t number) const;

  Day from_;
  Day to_;
  WeekdaySet weekend_;
  std::array<std::int64_t, 8>
      open_in_week_{};  // open weekdays among the first n days of a week that begins on Thursday
  std::array<int, 7> nth_in_week_{};
  std::vector<std::int32_t> numbers_;  // per day of the calendar, and of the day after it: the open days before it
  std::vector<Day> days_;
};

}  // namespace workbench::schedule
