// What a date costs: no allocation, and no more time the further away it is.
#include <algorithm>
#include <chrono>

#include "FailingNew.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

using Clock = std::chrono::steady_clock;

/// Works out this many dates, of contracts from this one on, of a rule with each kind of day and offset in turn.
std::size_t known_dates(std::size_t count, Month first, int offset) {
  std::size_t known = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const DayUnit unit = i % 2 == 0 ? in_trading_days : in_calendar_days;
    const RuleNumbers rule = less(i % 3 == 0 ? on_day(31) : on_weekday(5, 5, next_month, true), offset, unit);
    const Month contract = first + std::chrono::months{i % 12};
    known += contract_dates(rule, contract, china(), {.estimates = true}).roll.date ? 1 : 0;
  }
  return known;
}

/// The shortest of several times, since something else may run beside.
Clock::duration cost(Month first, int offset) {
  constexpr std::size_t dates = 2000;
  Clock::duration shortest = Clock::duration::max();
  for (int round = 0; round < 30; ++round) {
    const auto start = Clock::now();
    EXPECT_EQ(known_dates(dates, first, offset), dates);
    shortest = std::min(shortest, Clock::now() - start);
  }
  return shortest;
}

}  // namespace

TEST(ScheduleCost, DatesAllocateNothing) {
  china();  // the index is allocated once
  for (const std::size_t count : {1U, 10'000U}) {
    std::size_t known = 0;
    bool allocated = false;
    {
      const test_support::FailingNew first_allocation_fails(1);
      known = known_dates(count, Month{std::chrono::year{2026}, std::chrono::January}, 5);
      allocated = first_allocation_fails.has_failed();
    }
    EXPECT_EQ(known, count);
    EXPECT_FALSE(allocated) << count << " dates";
  }
}

TEST(ScheduleCost, TimeDoesNotDependOnTheDistance) {
  // A walk from day to day would take 99 steps instead of one, or the steps of 170 years.
  const Clock::duration usual = cost(month("2026-01"), 1);
  EXPECT_LT(cost(month("2025-01"), 99), 5 * usual);
  EXPECT_LT(cost(month("2199-01"), 99), 5 * usual);
  EXPECT_LT(cost(month("1900-06"), 99), 5 * usual);
}

}  // namespace workbench::schedule
