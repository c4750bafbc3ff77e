// Every date compared with a walk from day to day that asks the list of closed days and nothing else.
#include <set>

#include "Depth.h"
#include "RandomCases.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

using std::chrono::days;
using test_support::RandomCases;

struct Unknown {};

class DayWalk {
 public:
  DayWalk(Day from, Day to, WeekdaySet weekend, const std::vector<Day>& closed)
      : from_(from), to_(to), weekend_(weekend), closed_(closed.begin(), closed.end()) {}

  bool is_open(Day day) const {
    if (day < from_ || day > to_) throw Unknown{};
    return (weekend_ >> std::chrono::weekday{day}.c_encoding() & 1U) == 0 && !closed_.contains(day);
  }

  Day expiration(const RuleNumbers& rule, Day specified) const {
    while (!is_open(specified)) specified += days{rule.move_to_next_trading_day == 1 ? 1 : -1};
    return specified;
  }

  Day roll(const RuleNumbers& rule, Day specified) const {
    if (rule.roll_offset == 0) return expiration(rule, specified);
    if (rule.day_type == 1) return expiration(rule, specified) - days{rule.roll_offset};
    Day day = rule.move_to_next_trading_day == 1 ? specified : expiration(rule, specified);
    for (int left = rule.roll_offset; left > 0;) {
      day -= days{1};
      if (is_open(day)) --left;
    }
    return day;
  }

 private:
  Day from_;
  Day to_;
  WeekdaySet weekend_;
  std::set<Day> closed_;
};

Day walked_specified_day(const RuleNumbers& rule, Month contract) {
  const int shift = (rule.day_mode == 1 ? rule.weekday_month : rule.day_month) - 1;
  const Month wanted = contract + std::chrono::months{shift};
  std::vector<Day> candidates;
  for (Day day = Day{contract / 1} - days{40}; day < Day{contract / 1} + days{70}; day += days{1}) {
    const std::chrono::year_month_day date{day};
    if (date.year() != wanted.year() || date.month() != wanted.month()) continue;
    if (rule.day_mode == 0 ? static_cast<unsigned>(date.day()) <= static_cast<unsigned>(rule.day_of_month)
                           : std::chrono::weekday{day}.c_encoding() == static_cast<unsigned>(rule.weekday))
      candidates.push_back(day);
  }
  if (rule.day_mode == 0 || rule.week_ordinal == 5) return candidates.back();
  return candidates.at(static_cast<std::size_t>(rule.week_ordinal - 1));
}

RuleNumbers random_rule(RandomCases& random) {
  RuleNumbers rule;
  for (const RuleField& field : rule_fields)
    rule.*field.value =
        field.least + static_cast<int>(random.below(static_cast<unsigned>(field.greatest - field.least + 1)));
  if (random.below(3) == 0) rule.roll_offset = static_cast<int>(random.below(4));
  return rule;
}

template <class Walk>
ContractDay walked(Walk&& walk) {
  try {
    return {walk(), Basis::calendar};
  } catch (const Unknown&) {
    return {std::nullopt, Basis::beyond_calendar};
  }
}

void compare_with_walk(RandomCases& random, int number) {
  SCOPED_TRACE(random.trace(number));
  const Day from = day("2020-01-01") + days{random.below(3000)};
  const Day to = from + days{random.below(400)};
  const auto weekend =
      static_cast<WeekdaySet>(random.below(4) == 0 ? random.below(every_weekday) : saturday_and_sunday);
  std::vector<Day> closed;
  for (Day each = from; each <= to; each += days{1}) {
    if (random.below(8) == 0) closed.push_back(each);
  }
  const TradingDays calendar(from, to, weekend, closed);
  const DayWalk walk(from, to, weekend, closed);
  for (int rules = 0; rules < 20; ++rules) {
    const RuleNumbers rule = random_rule(random);
    const std::chrono::year_month_day around{from + days{random.below(400)} - days{20}};
    const Month contract{around.year(), around.month()};
    const ContractDates dates = contract_dates(rule, contract, calendar);
    const Day specified = walked_specified_day(rule, contract);
    ASSERT_EQ(dates.specified.date, specified);
    ASSERT_EQ(dates.expiration, walked([&] { return walk.expiration(rule, specified); }));
    ContractDay roll = walked([&] { return walk.roll(rule, specified); });
    if (roll.date && (*roll.date < from || *roll.date > to)) roll.basis = Basis::beyond_calendar;
    ASSERT_EQ(dates.roll, roll);
    ASSERT_EQ(dates.closed, roll.date && roll.basis == Basis::calendar && !walk.is_open(*roll.date));
    ASSERT_EQ(dates.moved, dates.expiration.date && dates.expiration.date != dates.specified.date);
    ASSERT_EQ(dates.invalid_fields, 0);
    // An estimate takes nothing back that was known.
    const ContractDates estimates = contract_dates(rule, contract, calendar, {.estimates = true});
    ASSERT_TRUE(estimates.expiration.date && estimates.roll.date);
    ASSERT_FALSE(estimates.has(Basis::beyond_calendar));
    if (dates.expiration.date) {
      ASSERT_EQ(estimates.expiration, dates.expiration);
    }
    if (dates.roll.basis == Basis::calendar) {
      ASSERT_EQ(estimates.roll, dates.roll);
    }
  }
}

}  // namespace

TEST(ScheduleProperties, DatesAreThoseOfAWalkFromDayToDay) {
  RandomCases random;
  for (int number = 0; number < test_support::repetitions(20000, 300) && !testing::Test::HasFatalFailure(); ++number)
    compare_with_walk(random, number);
}

TEST(ScheduleProperties, EstimatesAreThoseOfACalendarOfWeekdays) {
  RandomCases random;
  const TradingDays known(day("2026-01-01"), day("2026-12-31"), saturday_and_sunday, {});
  const TradingDays wide(day("2000-01-01"), day("2060-12-31"), saturday_and_sunday, {});
  for (int number = 0; number < 3000; ++number) {
    const RuleNumbers rule = random_rule(random);
    const Month contract = month("2020-01") + std::chrono::months{random.below(160)};
    const ContractDates estimate = contract_dates(rule, contract, known, {.estimates = true});
    const ContractDates exact = contract_dates(rule, contract, wide);
    ASSERT_EQ(estimate.expiration.date, exact.expiration.date) << random.trace(number);
    ASSERT_EQ(estimate.roll.date, exact.roll.date) << random.trace(number);
    ASSERT_EQ(estimate.closed, exact.closed) << random.trace(number);
  }
}

TEST(ScheduleProperties, ToggledDayIsThatOfTheCalendarWithIt) {
  RandomCases random;
  const std::vector<Day> closed{day("2026-01-01"), day("2026-01-02"), day("2026-02-16"), day("2026-02-17")};
  const auto calendar_with = [](const std::vector<Day>& days) {
    return TradingDays(day("2025-06-01"), day("2026-12-31"), saturday_and_sunday, days);
  };
  const TradingDays calendar = calendar_with(closed);
  for (int number = 0; number < 1000; ++number) {
    const Day toggled = day("2025-12-20") + days{random.below(70)};
    if (contains(saturday_and_sunday, toggled)) continue;
    std::vector<Day> other = closed;
    if (std::erase(other, toggled) == 0) other.push_back(toggled);
    const RuleNumbers rule = random_rule(random);
    const Month contract = month("2026-01") + std::chrono::months{random.below(3)};
    ASSERT_EQ(contract_dates(rule, contract, calendar, {.toggled_day = toggled}),
              contract_dates(rule, contract, calendar_with(other)))
        << random.trace(number);
  }
}

TEST(ScheduleProperties, AnyNumbersGiveDatesOrNameTheField) {
  RandomCases random;
  const TradingDays calendar(day("2026-01-01"), day("2026-12-31"), saturday_and_sunday, {});
  for (int number = 0; number < 20000; ++number) {
    RuleNumbers rule = random_rule(random);
    for (const RuleField& field : rule_fields) {
      if (random.below(4) == 0) rule.*field.value = static_cast<std::int32_t>(random.number());
    }
    const ContractDates dates = contract_dates(rule, month("2026-06"), calendar, {.estimates = true});
    ASSERT_EQ(dates.invalid_fields != 0, !dates.specified.date) << random.trace(number);
    ASSERT_EQ(dates.invalid_fields != 0, !dates.roll.date) << random.trace(number);
  }
}

}  // namespace workbench::schedule
