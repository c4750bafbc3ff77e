// What a date costs: no allocation, and no more steps the further away it is.
#include <algorithm>

#include "FailingNew.h"
#include "ScheduleTest.h"

namespace {

/// The stretches of code without a branch that ran in the sources of this program that are compiled to count them.
std::size_t steps = 0;

}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's name
extern "C" void __sanitizer_cov_trace_pc() { ++steps; }

namespace workbench::schedule {

namespace {

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

/// The most steps that one of a year's dates takes.
std::size_t most_steps(Month first, int offset) {
  std::size_t most = 0;
  for (std::size_t i = 0; i < 12; ++i) {
    for (const DayUnit unit : {in_trading_days, in_calendar_days}) {
      for (const RuleNumbers& rule : {on_day(31), on_weekday(5, 5, next_month, true)}) {
        steps = 0;
        contract_dates(less(rule, offset, unit), first + std::chrono::months{i}, china(), {.estimates = true});
        most = std::max(most, steps);
      }
    }
  }
  return most;
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

TEST(ScheduleCost, StepsDoNotDependOnTheDistance) {
  china();  // the index is built once
  // A walk from day to day takes a step for each of 99 days, or of the days of 170 years.
  const std::size_t usual = most_steps(month("2026-01"), 1);
  EXPECT_GT(usual, 5U) << "they are counted";
  constexpr std::size_t other_branches = 60;
  for (const char* first : {"2025-01", "2199-01", "1900-06"})
    EXPECT_LE(most_steps(month(first), 99), usual + other_branches) << first;
}

}  // namespace workbench::schedule
