#include <climits>

#include "ContractDates.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

/// 2025-12-01 to 2026-02-28. Closed besides the weekend: the new year's first two days, Thursday and Friday; the last
/// Friday of January.
TradingDays winter() {
  const std::vector<Day> closed{day("2026-01-01"), day("2026-01-02"), day("2026-01-30")};
  return {day("2025-12-01"), day("2026-02-28"), saturday_and_sunday, closed};
}

ContractDates dates_of(const RuleNumbers& rule, std::string_view contract, const DateOptions& options = {}) {
  return contract_dates(rule, month(contract), winter(), options);
}

std::string specified(const RuleNumbers& rule, std::string_view contract) {
  return text_of(dates_of(rule, contract).specified);
}

std::string expiration(const RuleNumbers& rule, std::string_view contract) {
  return text_of(dates_of(rule, contract).expiration);
}

std::string roll(const RuleNumbers& rule, std::string_view contract) { return text_of(dates_of(rule, contract).roll); }

}  // namespace

TEST(SpecifiedDay, IsADayOfThePreviousCurrentOrNextMonth) {
  EXPECT_EQ(specified(on_day(15, previous_month), "2026-02"), "2026-01-15");
  EXPECT_EQ(specified(on_day(15, current_month), "2026-02"), "2026-02-15");
  EXPECT_EQ(specified(on_day(15, next_month), "2026-02"), "2026-03-15");
}

TEST(SpecifiedDay, CountsMonthsAcrossTheYearsEnd) {
  EXPECT_EQ(specified(on_day(25, previous_month), "2026-01"), "2025-12-25");
  EXPECT_EQ(specified(on_day(1, next_month), "2025-12"), "2026-01-01");
  EXPECT_EQ(specified(on_weekday(3, 5, previous_month), "2026-01"), "2025-12-19");
  EXPECT_EQ(specified(on_weekday(3, 5, next_month), "2025-12"), "2026-01-16");
}

TEST(SpecifiedDay, IsTheLastOfAMonthThatDoesNotHaveTheDay) {
  EXPECT_EQ(specified(on_day(31), "2026-02"), "2026-02-28");
  EXPECT_EQ(specified(on_day(30), "2028-02"), "2028-02-29");
  EXPECT_EQ(specified(on_day(31), "2026-04"), "2026-04-30");
  EXPECT_TRUE(dates_of(on_day(31), "2026-02").clamped);
  EXPECT_FALSE(dates_of(on_day(28), "2026-02").clamped);
  EXPECT_FALSE(dates_of(on_day(31), "2026-01").clamped);
}

TEST(SpecifiedDay, IsTheNthWeekday) {
  EXPECT_EQ(specified(on_weekday(1, 0), "2026-02"), "2026-02-01");
  EXPECT_EQ(specified(on_weekday(1, 6), "2026-02"), "2026-02-07");
  EXPECT_EQ(specified(on_weekday(3, 5), "2026-01"), "2026-01-16");
  EXPECT_EQ(specified(on_weekday(4, 4), "2026-01"), "2026-01-22");
}

TEST(SpecifiedDay, FifthWeekdayIsTheLastWhichMayBeTheFourth) {
  EXPECT_EQ(specified(on_weekday(5, 5), "2026-01"), "2026-01-30");
  EXPECT_EQ(specified(on_weekday(5, 5), "2026-02"), "2026-02-27");
  EXPECT_EQ(specified(on_weekday(4, 5), "2026-02"), "2026-02-27");
  EXPECT_FALSE(dates_of(on_weekday(5, 5), "2026-02").clamped);
}

TEST(ExpirationDay, IsTheSpecifiedDayIfTheExchangeIsOpen) {
  EXPECT_EQ(expiration(on_day(15), "2026-01"), "2026-01-15");
  EXPECT_EQ(expiration(on_day(15, current_month, true), "2026-01"), "2026-01-15");
  EXPECT_FALSE(dates_of(on_day(15), "2026-01").moved);
}

TEST(ExpirationDay, MovesToTheNextTradingDay) {
  EXPECT_EQ(expiration(on_day(1, current_month, true), "2026-01"), "2026-01-05");
  EXPECT_TRUE(dates_of(on_day(1, current_month, true), "2026-01").moved);
}

TEST(ExpirationDay, MovesToThePreviousTradingDay) {
  EXPECT_EQ(expiration(on_day(4), "2026-01"), "2025-12-31");
  EXPECT_TRUE(dates_of(on_day(4), "2026-01").moved);
}

TEST(ExpirationDay, MovesAcrossTheMonthsEnd) {
  EXPECT_EQ(expiration(on_weekday(5, 5, current_month, true), "2026-01"), "2026-02-02");
  EXPECT_EQ(expiration(on_day(1), "2026-02"), "2026-01-29");
}

TEST(ExpirationDay, MoveOtherThanOneIsClear) {
  for (const std::int32_t value : {0, 2, -1, INT_MAX, INT_MIN}) {
    RuleNumbers rule = on_day(4);
    rule.move_to_next_trading_day = value;
    EXPECT_EQ(expiration(rule, "2026-01"), "2025-12-31") << value;
  }
}

TEST(RollDay, WithOffsetZeroIsTheExpirationDay) {
  for (const DayUnit unit : {in_trading_days, in_calendar_days}) {
    EXPECT_EQ(roll(less(on_day(4), 0, unit), "2026-01"), "2025-12-31");
  }
}

TEST(RollDay, CountsTradingDaysStrictlyBeforeTheMovedDay) {
  EXPECT_EQ(roll(less(on_day(4, current_month, true), 1, in_trading_days), "2026-01"), "2025-12-31");
  EXPECT_EQ(roll(less(on_day(4, current_month, false), 1, in_trading_days), "2026-01"), "2025-12-30");
  EXPECT_EQ(roll(less(on_day(7), 2, in_trading_days), "2026-01"), "2026-01-05");
  EXPECT_EQ(roll(less(on_day(7), 3, in_trading_days), "2026-01"), "2025-12-31");
}

TEST(RollDay, CountsEveryCalendarDayBeforeTheMovedDay) {
  EXPECT_EQ(roll(less(on_day(4, current_month, true), 6, in_calendar_days), "2026-01"), "2025-12-30");
  EXPECT_FALSE(dates_of(less(on_day(4, current_month, true), 6, in_calendar_days), "2026-01").closed);
}

TEST(RollDay, InCalendarDaysStaysOnAClosedDay) {
  const ContractDates dates = dates_of(less(on_day(5), 4, in_calendar_days), "2026-01");
  EXPECT_EQ(text_of(dates.roll), "2026-01-01");
  EXPECT_TRUE(dates.closed);
  EXPECT_TRUE(dates_of(less(on_day(5), 1, in_calendar_days), "2026-01").closed) << "a Sunday";
}

TEST(BeyondCalendar, RollIsKnownWhenOnlyTheExpirationLiesBeyond) {
  const ContractDates dates = contract_dates(less(on_day(1, next_month, true), 3, in_trading_days), month("2026-12"),
                                             trading_days(shipped("us-futures")));
  EXPECT_EQ(text_of(dates.specified), "2027-01-01");
  EXPECT_EQ(dates.specified.basis, Basis::calendar);
  EXPECT_EQ(text_of(dates.expiration), "");
  EXPECT_EQ(dates.expiration.basis, Basis::beyond_calendar);
  EXPECT_EQ(text_of(dates.roll), "2026-12-29");
  EXPECT_EQ(dates.roll.basis, Basis::calendar);
  EXPECT_FALSE(dates.moved);
}

TEST(BeyondCalendar, RollIsUnknownWhenItsCountNeedsAnUnknownDay) {
  // The second day of March: whether the exchange is open on the first is not known.
  const ContractDates next = dates_of(less(on_day(2, next_month, true), 3, in_trading_days), "2026-02");
  EXPECT_EQ(next.roll, (ContractDay{std::nullopt, Basis::beyond_calendar}));
  // Moved to the previous trading day, it may be the first of March itself from which the offset counts.
  const ContractDates previous = dates_of(less(on_day(1, next_month), 3, in_trading_days), "2026-02");
  EXPECT_EQ(previous.roll, (ContractDay{std::nullopt, Basis::beyond_calendar}));
}

TEST(BeyondCalendar, ExpirationIsKnownWhenOnlyTheRollLiesBeyond) {
  const ContractDates dates = dates_of(less(on_day(2), 2, in_trading_days), "2025-12");
  EXPECT_EQ(text_of(dates.expiration), "2025-12-02");
  EXPECT_EQ(dates.roll, (ContractDay{std::nullopt, Basis::beyond_calendar}));
}

TEST(BeyondCalendar, RollInCalendarDaysIsKnownButNotWhetherTheExchangeIsOpen) {
  const ContractDates dates = dates_of(less(on_day(1), 1, in_calendar_days), "2025-12");
  EXPECT_EQ(text_of(dates.roll), "2025-11-30");
  EXPECT_EQ(dates.roll.basis, Basis::beyond_calendar);
  EXPECT_FALSE(dates.closed);
}

TEST(BeyondCalendar, ClosedFirstDayCannotMoveBack) {
  const std::vector<Day> closed{day("2025-12-01")};
  const TradingDays days(day("2025-12-01"), day("2025-12-31"), saturday_and_sunday, closed);
  const ContractDates dates = contract_dates(on_day(1), month("2025-12"), days);
  EXPECT_EQ(dates.expiration, (ContractDay{std::nullopt, Basis::beyond_calendar}));
  EXPECT_EQ(text_of(contract_dates(on_day(1, current_month, true), month("2025-12"), days).expiration), "2025-12-02");
}

TEST(Estimates, CountWeekdaysOutsideTheCalendarAsOpen) {
  const DateOptions estimates{.estimates = true};
  const ContractDates dates = dates_of(on_day(15, current_month, true), "2026-08", estimates);
  EXPECT_EQ(text_of(dates.expiration), "2026-08-17");
  EXPECT_EQ(dates.expiration.basis, Basis::estimate);
  EXPECT_EQ(dates.roll.basis, Basis::estimate);
  EXPECT_EQ(dates.specified.basis, Basis::calendar);
  EXPECT_TRUE(dates.moved);
}

TEST(Estimates, AreOnlyTheDaysThatRestOnOne) {
  const ContractDates dates =
      dates_of(less(on_day(1, next_month, true), 3, in_trading_days), "2026-02", {.estimates = true});
  EXPECT_EQ(text_of(dates.expiration), "2026-03-02");
  EXPECT_EQ(dates.expiration.basis, Basis::estimate);
  EXPECT_EQ(text_of(dates.roll), "2026-02-25");
  EXPECT_EQ(dates.roll.basis, Basis::calendar);
  const ContractDates early = dates_of(less(on_day(2), 2, in_trading_days), "2025-12", {.estimates = true});
  EXPECT_EQ(early.expiration.basis, Basis::calendar);
  EXPECT_EQ(text_of(early.roll), "2025-11-28");
  EXPECT_EQ(early.roll.basis, Basis::estimate);
}

TEST(Estimates, ClosedRollOutsideTheCalendarIsOne) {
  const ContractDates dates = dates_of(less(on_day(1), 1, in_calendar_days), "2025-12", {.estimates = true});
  EXPECT_EQ(dates.roll.basis, Basis::estimate);
  EXPECT_TRUE(dates.closed) << "a Sunday";
}

TEST(InvalidRule, EachFieldOutOfItsRangeGivesNoDate) {
  for (std::size_t i = 0; i < rule_fields.size(); ++i) {
    const RuleField& field = rule_fields[i];
    if (field.value == &RuleNumbers::move_to_next_trading_day) continue;
    for (const std::int32_t value : {field.least - 1, field.greatest + 1, INT_MIN, INT_MAX}) {
      RuleNumbers rule = i >= 5 ? on_weekday(1, 1) : on_day(1);
      rule.*field.value = value;
      const ContractDates dates = dates_of(rule, "2026-01");
      EXPECT_EQ(dates.invalid_fields, 1U << i) << field.name << ' ' << value;
      for (const ContractDay& each : {dates.specified, dates.expiration, dates.roll})
        EXPECT_EQ(each, (ContractDay{std::nullopt, Basis::invalid_rule})) << field.name << ' ' << value;
    }
    for (const std::int32_t value : {field.least, field.greatest}) {
      RuleNumbers rule = i >= 5 ? on_weekday(1, 1) : on_day(1);
      rule.*field.value = value;
      EXPECT_EQ(dates_of(rule, "2026-01").invalid_fields, 0) << field.name << ' ' << value;
    }
  }
}

TEST(InvalidRule, FieldsThatTheModeDoesNotUseMayHoldAnyValue) {
  RuleNumbers by_day = on_day(15);
  by_day.week_ordinal = by_day.weekday = by_day.weekday_month = INT_MIN;
  EXPECT_EQ(expiration(by_day, "2026-01"), "2026-01-15");
  RuleNumbers by_weekday = on_weekday(3, 5);
  by_weekday.day_of_month = by_weekday.day_month = INT_MAX;
  EXPECT_EQ(expiration(by_weekday, "2026-01"), "2026-01-16");
}

TEST(InvalidRule, UnknownModeIsTheOnlyFaultThatIsReportedOfTheDay) {
  RuleNumbers rule;
  rule.day_mode = 2;
  rule.day_of_month = rule.weekday = 99;
  EXPECT_EQ(dates_of(rule, "2026-01").invalid_fields, 1U << 2U);
}

TEST(ContractDates, ContractsAfter2199AreUnknownOrEstimates) {
  struct Case {
    RuleNumbers rule;
    Month contract = {};
    const char* specified = nullptr;
    const char* expiration = nullptr;
    const char* roll = nullptr;
    bool clamped = false;
  };
  const auto in = [](int year, unsigned month) { return std::chrono::year{year} / std::chrono::month{month}; };
  const Case cases[]{
      {on_day(15, next_month), in(2199, 12), "2200-01-15", "2200-01-15", "2200-01-15", false},
      {less(on_day(1), 2, in_trading_days), in(2200, 1), "2200-01-01", "2200-01-01", "2199-12-30", false},
      // 2200 is no leap year.
      {less(on_day(31), 1, in_calendar_days), in(2200, 2), "2200-02-28", "2200-02-28", "2200-02-27", true},
      {on_weekday(5, 0, previous_month, true), in(2200, 2), "2200-01-26", "2200-01-27", "2200-01-27", false},
      {on_day(1, current_month), in(9999, 8), "9999-08-01", "9999-07-30", "9999-07-30", false},
  };
  for (const auto& [rule, contract, specified, expiration, roll, clamped] : cases) {
    const ContractDates unknown = contract_dates(rule, contract, winter());
    EXPECT_EQ(text_of(unknown.specified), specified);
    EXPECT_EQ(unknown.expiration, (ContractDay{std::nullopt, Basis::beyond_calendar}));
    EXPECT_EQ(unknown.roll, (ContractDay{std::nullopt, Basis::beyond_calendar}));
    EXPECT_EQ(unknown.clamped, clamped);
    const ContractDates estimates = contract_dates(rule, contract, winter(), {.estimates = true});
    EXPECT_EQ(text_of(estimates.expiration), expiration);
    EXPECT_EQ(text_of(estimates.roll), roll);
    EXPECT_EQ(estimates.roll.basis, Basis::estimate);
  }
}

TEST(ToggledDay, IsTakenAsTheOppositeOfTheCalendar) {
  const RuleNumbers rule = less(on_day(2, current_month, true), 1, in_trading_days);
  EXPECT_EQ(expiration(rule, "2026-01"), "2026-01-05");
  const ContractDates opened = dates_of(rule, "2026-01", {.toggled_day = day("2026-01-02")});
  EXPECT_EQ(text_of(opened.expiration), "2026-01-02");
  EXPECT_EQ(text_of(opened.roll), "2025-12-31");
  const ContractDates closed = dates_of(rule, "2026-01", {.toggled_day = day("2026-01-05")});
  EXPECT_EQ(text_of(closed.expiration), "2026-01-06");
  EXPECT_EQ(text_of(closed.roll), "2025-12-31");
}

}  // namespace workbench::schedule
