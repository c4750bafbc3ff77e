#include "TradingDays.h"

#include <algorithm>
#include <cassert>

namespace workbench::schedule {

namespace {

using std::chrono::days;

/// The quotient rounded towards minus infinity.
std::int64_t floor_divide(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t quotient = dividend / divisor;
  return dividend % divisor < 0 ? quotient - 1 : quotient;
}

}  // namespace

TradingDays::TradingDays(Day from, Day to, WeekdaySet weekend, std::span<const Day> closed)
    : from_(from), to_(to), weekend_(weekend) {
  assert(from <= to && (weekend & every_weekday) != every_weekday);
  // The epoch, 1970-01-01, is a Thursday.
  std::size_t open = 0;
  for (std::size_t i = 0; i < 7; ++i) {
    if (!is_weekend(Day{days{i}})) nth_in_week_[open++] = static_cast<int>(i);
    open_in_week_[i + 1] = static_cast<std::int64_t>(open);
  }

  const auto length = static_cast<std::size_t>((to - from).count() + 1);
  std::vector<bool> is_closed(length);
  for (const Day day : closed) {
    if (covers(day)) is_closed[static_cast<std::size_t>((day - from).count())] = true;
  }
  numbers_.reserve(length + 1);
  for (std::size_t i = 0; i < length; ++i) {
    numbers_.push_back(static_cast<std::int32_t>(days_.size()));
    const Day day = from + days{i};
    if (!is_weekend(day) && !is_closed[i]) days_.push_back(day);
  }
  numbers_.push_back(static_cast<std::int32_t>(days_.size()));
}

std::int64_t TradingDays::weekdays_before(Day day) const {
  const std::int64_t count = day.time_since_epoch().count();
  const std::int64_t week = floor_divide(count, 7);
  return week * open_in_week_[7] + open_in_week_[static_cast<std::size_t>(count - week * 7)];
}

Day TradingDays::nth_weekday(std::int64_t number) const {
  const std::int64_t week = floor_divide(number, open_in_week_[7]);
  return Day{days{week * 7 + nth_in_week_[static_cast<std::size_t>(number - week * open_in_week_[7])]}};
}

std::int64_t TradingDays::number_at(Day day) const {
  if (day < from_) return weekdays_before(day) - weekdays_before(from_);
  if (day <= to_) return numbers_[static_cast<std::size_t>((day - from_).count())];
  return numbers_.back() + weekdays_before(day) - weekdays_before(to_ + days{1});
}

Day TradingDays::day_at(std::int64_t number) const {
  if (number < 0) return nth_weekday(weekdays_before(from_) + number);
  if (number < numbers_.back()) return days_[static_cast<std::size_t>(number)];
  return nth_weekday(weekdays_before(to_ + days{1}) + number - numbers_.back());
}

}  // namespace workbench::schedule
