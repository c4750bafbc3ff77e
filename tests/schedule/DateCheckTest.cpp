#include "DateCheck.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

using Days = std::vector<Day>;

DateCheck check(const RuleNumbers& rule, std::string_view contract, std::string_view listed) {
  return check_date(rule, {month(contract), day(listed)}, china(), Against::roll);
}

}  // namespace

TEST(DateCheck, EqualDaysMatch) {
  const DateCheck result = check(on_weekday(3, 5, current_month, true), "2026-02", "2026-02-24");
  EXPECT_TRUE(result.is_match());
  EXPECT_EQ(result.days, 0);
  EXPECT_TRUE(result.explained_by.empty());
}

TEST(DateCheck, DifferenceIsCountedFromTheListedDay) {
  EXPECT_EQ(check(on_day(15), "2026-01", "2026-01-13").days, 2);
  EXPECT_EQ(check(on_day(15), "2026-01", "2026-01-20").days, -5);
  EXPECT_FALSE(check(on_day(15), "2026-01", "2026-01-20").is_match());
}

TEST(DateCheck, MissingClosedDayExplainsALaterDay) {
  // The third Friday is open here; were it closed, the following Monday would be the last trading day.
  const DateCheck result = check(on_weekday(3, 5, current_month, true), "2026-01", "2026-01-19");
  EXPECT_EQ(result.days, -3);
  EXPECT_EQ(result.explained_by, Days{day("2026-01-16")});
}

TEST(DateCheck, ClosedDayThatShouldBeOpenExplainsAnEarlierDay) {
  // The third Friday of February 2026 lies in the spring festival.
  const DateCheck result = check(on_weekday(3, 5, current_month, true), "2026-02", "2026-02-20");
  EXPECT_EQ(result.days, 4);
  EXPECT_EQ(result.explained_by, Days{day("2026-02-20")});
}

TEST(DateCheck, EveryDayThatWouldExplainIsNamed) {
  // Each of the last three trading days before the fifteenth would do, and the fifteenth itself.
  const RuleNumbers rule = less(on_day(15), 3, in_trading_days);
  EXPECT_EQ(text_of(contract_dates(rule, month("2026-01"), china()).roll), "2026-01-12");
  EXPECT_EQ(check(rule, "2026-01", "2026-01-09").explained_by,
            (Days{day("2026-01-12"), day("2026-01-13"), day("2026-01-14"), day("2026-01-15")}));
}

TEST(DateCheck, WeekendDaysDoNotExplain) {
  const RuleNumbers saturday = on_day(17, current_month, true);
  EXPECT_EQ(check(saturday, "2026-01", "2026-01-17").explained_by, Days{});
}

TEST(DateCheck, WhatNoSingleDayExplainsIsLeftOpen) {
  EXPECT_EQ(check(on_day(15), "2026-01", "2026-01-05").explained_by, Days{});
}

TEST(DateCheck, UnknownDayHasNoDifference) {
  const DateCheck result = check(on_day(15), "2027-01", "2027-01-15");
  EXPECT_EQ(result.found.basis, Basis::beyond_calendar);
  EXPECT_EQ(result.days, std::nullopt);
  EXPECT_FALSE(result.is_match());
}

TEST(DateCheck, RollOfAnUnknownExpirationIsExplained) {
  const RuleNumbers gold = less(on_day(1, next_month, true), 3, in_trading_days);
  const TradingDays us = trading_days(shipped("us-futures"));
  const DateCheck result = check_date(gold, {month("2026-12"), day("2026-12-28")}, us, Against::roll);
  EXPECT_EQ(result.days, 1);
  EXPECT_EQ(result.explained_by, (Days{day("2026-12-29"), day("2026-12-30"), day("2026-12-31")}));
}

TEST(DateCheck, ExpirationCanBeMeant) {
  const RuleNumbers rule = less(on_day(15), 3, in_trading_days);
  EXPECT_TRUE(check_date(rule, {month("2026-01"), day("2026-01-15")}, china(), Against::expiration).is_match());
}

}  // namespace workbench::schedule
