#include "QuantLibPeer.h"

#include <algorithm>
#include <chrono>
#include <ql/time/date.hpp>

namespace quantlib_peer {

namespace {

using std::chrono::days;

QuantLib::Date to_quantlib(Day day) {
  // Both count days one by one; 25569 is the day of 1970-01-01.
  return QuantLib::Date(static_cast<QuantLib::Date::serial_type>(day.time_since_epoch().count() + 25569));
}

Day from_quantlib(const QuantLib::Date& date) { return Day{days{date.serialNumber() - 25569}}; }

/// Sunday is 1.
QuantLib::Weekday weekday_of(int number) { return static_cast<QuantLib::Weekday>(number + 1); }

QuantLib::Date specified_date(const RuleNumbers& rule, Month contract) {
  const Month month = contract + std::chrono::months{(rule.day_mode == 0 ? rule.day_month : rule.weekday_month) - 1};
  const auto year = static_cast<QuantLib::Year>(static_cast<int>(month.year()));
  const auto name = static_cast<QuantLib::Month>(static_cast<unsigned>(month.month()));
  const QuantLib::Date last = QuantLib::Date::endOfMonth(QuantLib::Date(1, name, year));
  if (rule.day_mode == 0) return {std::min<int>(rule.day_of_month, last.dayOfMonth()), name, year};
  const QuantLib::Weekday weekday = weekday_of(rule.weekday);
  if (rule.week_ordinal < 5) return QuantLib::Date::nthWeekday(rule.week_ordinal, weekday, name, year);
  return last - (last.weekday() - weekday + 7) % 7;
}

}  // namespace

QuantLib::BespokeCalendar calendar_of(const std::string& name, workbench::schedule::WeekdaySet weekend,
                                      const std::vector<Day>& closed) {
  QuantLib::BespokeCalendar calendar(name);
  for (int weekday = 0; weekday < 7; ++weekday) {
    if ((weekend >> weekday & 1U) != 0) calendar.addWeekend(weekday_of(weekday));
  }
  for (const Day day : closed) calendar.addHoliday(to_quantlib(day));
  return calendar;
}

BothDays days_of(const RuleNumbers& rule, Month contract, const QuantLib::Calendar& calendar) {
  const QuantLib::Date expiration = calendar.adjust(
      specified_date(rule, contract), rule.move_to_next_trading_day == 1 ? QuantLib::Following : QuantLib::Preceding);
  const QuantLib::Date roll = rule.roll_offset == 0 ? expiration
                              : rule.day_type == 1  ? expiration - rule.roll_offset
                                                    : calendar.advance(expiration, -rule.roll_offset, QuantLib::Days);
  return {from_quantlib(expiration), from_quantlib(roll)};
}

AllDates dates_of(const RuleNumbers& rule, Month contract, const QuantLib::Calendar& calendar) {
  const QuantLib::Date specified = specified_date(rule, contract);
  AllDates dates{.specified = from_quantlib(specified), .days = days_of(rule, contract, calendar)};
  dates.clamped = rule.day_mode == 0 && rule.day_of_month > QuantLib::Date::endOfMonth(specified).dayOfMonth();
  dates.moved = !calendar.isBusinessDay(specified);
  dates.closed = !calendar.isBusinessDay(to_quantlib(dates.days.roll));
  return dates;
}

}  // namespace quantlib_peer
