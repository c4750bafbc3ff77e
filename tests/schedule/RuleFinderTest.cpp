#include <algorithm>
#include <set>
#include <tuple>

#include "Depth.h"
#include "PublishedDates.h"
#include "RandomCases.h"
#include "RuleFinder.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

using std::chrono::days;

std::vector<RuleNumbers> rules_of(const FoundRules& found) {
  std::vector<RuleNumbers> rules;
  for (const FoundRule& rule : found.rules) rules.push_back(rule.rule);
  return rules;
}

/// The dates that a rule gives for these contract months.
std::vector<KnownDate> dates_of(const RuleNumbers& rule, std::string_view first, int count, const TradingDays& calendar,
                                Against against = Against::roll) {
  std::vector<KnownDate> dates;
  for (int i = 0; i < count; ++i) {
    const Month contract = month(first) + std::chrono::months{i};
    const ContractDay given = chosen(contract_dates(rule, contract, calendar), against);
    if (given.date) dates.push_back({contract, *given.date});
  }
  return dates;
}

auto order_of(const RuleNumbers& rule) {
  const int month = rule.day_mode == 0 ? rule.day_month : rule.weekday_month;
  const bool weekend = rule.day_mode == 1 && (rule.weekday == 0 || rule.weekday == 6);
  return std::tuple(rule.roll_offset != 0, rule.day_type, rule.roll_offset, rule.day_mode == 0,
                    month == 1   ? 0
                    : month == 2 ? 1
                                 : 2,
                    weekend, rule.day_of_month, rule.week_ordinal, rule.weekday, rule.move_to_next_trading_day);
}

}  // namespace

TEST(RuleFinder, EachRuleOfTheSpaceComesOnceAndInOrder) {
  for (std::size_t at = 0; at < rule_count; ++at) {
    const RuleNumbers rule = rule_at(at);
    ASSERT_EQ(invalid_fields(rule), 0);
    if (at > 0) {
      ASSERT_LT(order_of(rule_at(at - 1)), order_of(rule)) << at;
    }
    if (rule.roll_offset == 0) {
      ASSERT_EQ(rule.day_type, 0);
    }
    const RuleNumbers fresh;
    if (rule.day_mode == 0) {
      ASSERT_EQ(std::tie(rule.week_ordinal, rule.weekday, rule.weekday_month),
                std::tie(fresh.week_ordinal, fresh.weekday, fresh.weekday_month));
    } else {
      ASSERT_EQ(std::tie(rule.day_of_month, rule.day_month), std::tie(fresh.day_of_month, fresh.day_month));
    }
  }
}

TEST(RuleFinder, PublishedRulesAreAmongThoseOfTheirDates) {
  for (const PublishedRule& published : published_rules()) {
    const FoundRules found = find_rules(published.dates, trading_days(shipped(published.calendar)), Against::roll);
    EXPECT_EQ(found.counted, published.dates.size());
    EXPECT_EQ(found.agreeing, found.rules.size());
    EXPECT_TRUE(std::ranges::count(rules_of(found), published.rule) == 1) << published.product;
    for (const FoundRule& rule : found.rules) EXPECT_EQ(rule.missed, std::vector<Month>{}) << published.product;
  }
}

TEST(RuleFinder, FindsExactlyTheRulesThatGiveAllDates) {
  test_support::RandomCases random;
  const TradingDays calendar(day("2025-01-01"), day("2025-12-31"), saturday_and_sunday, shipped_days("china-futures"));
  for (int number = 0; number < test_support::repetitions(60, 4); ++number) {
    SCOPED_TRACE(random.trace(number));
    const RuleNumbers origin = rule_at(random.below(rule_count));
    // Near the calendar's ends too, where days are unknown.
    const std::string first = number % 2 == 0 ? "2025-01" : "2025-10";
    const Against against = number % 4 == 3 ? Against::expiration : Against::roll;
    std::vector<KnownDate> dates = dates_of(origin, first, 1 + static_cast<int>(random.below(4)), calendar, against);
    std::erase_if(dates, [&](const KnownDate& known) { return !calendar.covers(known.date); });
    if (dates.empty()) continue;
    std::vector<RuleNumbers> expected;
    for (std::size_t at = 0; at < rule_count; ++at) {
      const RuleNumbers rule = rule_at(at);
      if (std::ranges::all_of(dates, [&](const KnownDate& known) {
            return chosen(contract_dates(rule, known.contract, calendar), against).date == known.date;
          }))
        expected.push_back(rule);
    }
    const FoundRules found = find_rules(dates, calendar, against);
    ASSERT_EQ(rules_of(found), expected);
    ASSERT_EQ(found.agreeing, expected.size());
  }
}

TEST(RuleFinder, MoreDatesSeparateRules) {
  const RuleNumbers third_friday = on_weekday(3, 5, current_month, true);
  const FoundRules few = find_rules(dates_of(third_friday, "2024-03", 2, china()), china(), Against::roll);
  const FoundRules many = find_rules(dates_of(third_friday, "2021-01", 60, china()), china(), Against::roll);
  EXPECT_GT(few.agreeing, many.agreeing);
  ASSERT_EQ(many.agreeing, 1U);
  EXPECT_EQ(many.rules.front().rule, third_friday);
}

TEST(RuleFinder, LimitCutsTheListButNotTheCount) {
  const std::vector<KnownDate> dates = dates_of(on_day(15), "2024-03", 1, china());
  const FoundRules all = find_rules(dates, china(), Against::roll);
  const FoundRules three = find_rules(dates, china(), Against::roll, 3);
  EXPECT_EQ(three.agreeing, all.agreeing);
  ASSERT_EQ(three.rules.size(), 3U);
  EXPECT_EQ(three.rules[2], all.rules[2]);
}

TEST(RuleFinder, WithoutAFittingRuleTheTenBestNameWhatTheyMiss) {
  const RuleNumbers rule = on_day(15, current_month, true);
  std::vector<KnownDate> dates = dates_of(rule, "2023-01", 24, china());
  dates[5].date = day("2023-09-01");
  const FoundRules found = find_rules(dates, china(), Against::roll);
  EXPECT_EQ(found.agreeing, 0U);
  EXPECT_EQ(found.counted, 24U);
  ASSERT_EQ(found.rules.size(), 10U);
  EXPECT_EQ(found.rules[0].rule, rule);
  EXPECT_EQ(found.rules[0].matched, 23U);
  EXPECT_EQ(found.rules[0].missed, std::vector<Month>{month("2023-06")});
  for (std::size_t i = 1; i < found.rules.size(); ++i) {
    EXPECT_LE(found.rules[i].matched, found.rules[i - 1].matched);
    EXPECT_EQ(found.rules[i].missed.size(), 24 - found.rules[i].matched);
    if (found.rules[i].matched == found.rules[i - 1].matched) {
      EXPECT_LT(order_of(found.rules[i - 1].rule), order_of(found.rules[i].rule));
    }
  }
}

TEST(RuleFinder, RulesThatGiveNoneOfTheDatesAreNotBest) {
  // No rule reaches back for years.
  const std::vector<KnownDate> dates{{month("2024-01"), day("2020-01-02")}};
  const FoundRules found = find_rules(dates, china(), Against::roll);
  EXPECT_EQ(found.agreeing, 0U);
  EXPECT_TRUE(found.rules.empty());
}

TEST(RuleFinder, ClosedDatesAreNamedAndCount) {
  const KnownDate sunday{month("2024-03"), day("2024-03-10")};
  const FoundRules found = find_rules(std::vector{sunday}, china(), Against::roll);
  EXPECT_EQ(found.closed, std::vector{sunday});
  EXPECT_EQ(found.counted, 1U);
  ASSERT_GT(found.agreeing, 0U);
  for (const FoundRule& rule : found.rules)
    ASSERT_EQ(rule.rule.day_type, 1) << "only calendar days end on a closed day";
}

TEST(RuleFinder, DatesBeyondTheCalendarAreNamedAndDoNotCount) {
  const KnownDate beyond{month("2027-01"), day("2027-01-15")};
  std::vector<KnownDate> dates = dates_of(on_weekday(3, 5, current_month, true), "2026-01", 12, china());
  const FoundRules without = find_rules(dates, china(), Against::roll);
  dates.push_back(beyond);
  const FoundRules with = find_rules(dates, china(), Against::roll);
  EXPECT_EQ(with.beyond_calendar, std::vector{beyond});
  EXPECT_EQ(with.rules, without.rules);
  EXPECT_EQ(with.counted, 12U);

  const FoundRules none = find_rules(std::vector{beyond}, china(), Against::roll);
  EXPECT_EQ(none.counted, 0U);
  EXPECT_EQ(none.agreeing, 0U);
  EXPECT_TRUE(none.rules.empty());
}

}  // namespace workbench::schedule
