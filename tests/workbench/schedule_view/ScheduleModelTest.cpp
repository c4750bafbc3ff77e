#include <gtest/gtest.h>

#include <algorithm>

#include "ScheduleModel.h"
#include "ScheduleSamples.h"

namespace workbench {
namespace {

std::vector<std::string> contracts_of(const Schedule& schedule) {
  std::vector<std::string> contracts;
  for (const ScheduleLine& line : schedule.lines)
    contracts.push_back(line.row.setting + ' ' + to_text(line.row.dates.contract));
  return contracts;
}

const ScheduleLine& line_of(const Schedule& schedule, Month wanted) {
  return *std::ranges::find(schedule.lines, wanted, [](const ScheduleLine& line) { return line.row.dates.contract; });
}

TEST(ScheduleModel, SettingGivesTwelveMonthsOfItsRule) {
  const Schedule schedule = make_schedule(sample_data(), choice_of_setting(1));
  ASSERT_EQ(schedule.lines.size(), 12u);
  const ScheduleLine& february = schedule.lines.at(1);
  EXPECT_EQ(february.row.rule, "index");
  EXPECT_EQ(february.row.setting, "IF");
  EXPECT_EQ(february.row.dates.specified.date, day(2026, 2, 20));
  EXPECT_EQ(february.row.dates.roll.date, day(2026, 2, 23));
  EXPECT_EQ(schedule.calendar, sample_calendar());
  EXPECT_EQ(schedule.unknown_from, day(2027, 1, 1));
}

TEST(ScheduleModel, YearHasEachContractThatHasADayInIt) {
  ScheduleData data = sample_data();
  data.rules.front().item.numbers.roll_offset = 40;
  const Schedule schedule =
      make_schedule(data, {.setting = 1, .first = contract(2025, 6), .months = 1, .year = year{2025}});
  ASSERT_FALSE(schedule.lines.empty());
  EXPECT_EQ(schedule.lines.front().row.dates.contract, contract(2025, 1)) << "expires in January";
  EXPECT_EQ(schedule.lines.back().row.dates.contract, contract(2026, 2)) << "rolls in December";
}

TEST(ScheduleModel, SettingGivesItsDeliveryMonthsAlone) {
  const Schedule schedule = make_schedule(sample_data(), choice_of_setting(2));
  EXPECT_EQ(contracts_of(schedule), (std::vector<std::string>{"quarterly 2026-03", "quarterly 2026-06",
                                                              "quarterly 2026-09", "quarterly 2026-12"}));
}

TEST(ScheduleModel, RuleGivesEachSettingThatUsesIt) {
  const Schedule schedule = make_schedule(sample_data(), {.rule = 1, .first = contract(2026, 3), .months = 1});
  EXPECT_EQ(contracts_of(schedule), (std::vector<std::string>{"IF 2026-03", "quarterly 2026-03"}));
}

TEST(ScheduleModel, RuleWithoutSettingTakesTheChosenCalendar) {
  ScheduleChoice choice{.rule = 2, .first = contract(2026, 1), .months = 2};
  EXPECT_EQ(make_schedule(sample_data(), choice).reason, NoDatesReason::no_calendar);
  choice.calendar = "sample";
  EXPECT_EQ(make_schedule(sample_data(), choice).lines.size(), 2u);
}

struct Missing {
  const char* name;
  ScheduleChoice choice;
  schedule::NamedSetting setting;
  NoDatesReason reason;
  std::string subject;
};

void PrintTo(const Missing& parameter, std::ostream* out) { *out << parameter.name; }

class MissingDates : public testing::TestWithParam<Missing> {};

TEST_P(MissingDates, HaveAReason) {
  ScheduleData data = sample_data();
  data.settings.front().item = GetParam().setting;
  const Schedule schedule = make_schedule(data, GetParam().choice);
  EXPECT_TRUE(schedule.lines.empty());
  EXPECT_EQ(schedule.reason, GetParam().reason);
  EXPECT_EQ(schedule.subject, GetParam().subject);
}

INSTANTIATE_TEST_SUITE_P(
    ScheduleModel, MissingDates,
    testing::Values(
        Missing{"NothingSelected", {}, {.name = "a"}, NoDatesReason::nothing_selected, ""},
        Missing{"SettingThatIsNotThere", choice_of_setting(9), {.name = "a"}, NoDatesReason::nothing_selected, ""},
        Missing{"SettingWithoutRule", choice_of_setting(1), {.name = "a"}, NoDatesReason::no_rule, ""},
        Missing{"RuleThatDoesNotExist",
                choice_of_setting(1),
                {.name = "a", .rule = "gone"},
                NoDatesReason::rule_missing,
                "gone"},
        Missing{"SettingWithoutCalendar",
                choice_of_setting(1),
                {.name = "a", .rule = "index"},
                NoDatesReason::no_calendar,
                "index"},
        Missing{"CalendarThatDoesNotExist",
                choice_of_setting(1),
                {.name = "a", .rule = "index", .calendar = "gone"},
                NoDatesReason::calendar_missing,
                "gone"}),
    [](const auto& test) { return test.param.name; });

TEST(ScheduleModel, DaysBeyondTheCalendarNeedAttentionUntilTheyAreEstimated) {
  ScheduleChoice choice{.setting = 1, .first = contract(2026, 12), .months = 2};
  EXPECT_EQ(make_schedule(sample_data(), choice).lines.at(1).attention, attention_beyond_calendar);
  choice.estimates = true;
  const ScheduleLine january = make_schedule(sample_data(), choice).lines.at(1);
  EXPECT_EQ(january.attention, attention_none);
  EXPECT_EQ(january.row.dates.roll.basis, schedule::Basis::estimate);
}

TEST(ScheduleModel, ClosedRollDayNeedsAttention) {
  ScheduleData data = sample_data();
  data.rules.front().item.numbers = {
      .roll_offset = 1, .day_type = 1, .day_of_month = 21, .move_to_next_trading_day = 1};
  const Schedule schedule = make_schedule(data, choice_of_setting(1));
  EXPECT_EQ(line_of(schedule, contract(2026, 2)).attention, attention_closed_roll);
  EXPECT_EQ(line_of(schedule, contract(2026, 1)).attention, attention_none);
}

TEST(ScheduleModel, RollDayThatIsNotLaterThanThePreviousContractsNeedsAttention) {
  // 99 open days before the first of a month lie before the long closure for every month that ends in it.
  ScheduleData data = sample_data();
  data.calendars.front().weekend = 0;
  data.rules.front().item.numbers = {.roll_offset = 99, .day_of_month = 1};
  data.calendars.front().from = day(2024, 1, 1);
  data.calendars.front().closed.clear();
  for (Day closed = day(2025, 10, 5); closed < day(2026, 5, 1); closed += std::chrono::days{1})
    data.calendars.front().closed.push_back({closed, ""});
  const Schedule schedule = make_schedule(data, choice_of_setting(1));
  EXPECT_TRUE(line_of(schedule, contract(2026, 1)).attention & attention_roll_not_later)
      << "the contract before the first one counts too";
  EXPECT_TRUE(line_of(schedule, contract(2026, 3)).attention & attention_roll_not_later);
  EXPECT_FALSE(line_of(schedule, contract(2026, 12)).attention & attention_roll_not_later);
}

TEST(ScheduleModel, NumberWithoutMeaningNeedsAttention) {
  ScheduleData data = sample_data();
  data.rules.front().item.numbers.weekday = 7;
  EXPECT_EQ(make_schedule(data, choice_of_setting(1)).lines.front().attention, attention_no_date);
}

TEST(ScheduleModel, SeveralCalendarsHaveNoCommonOne) {
  ScheduleData data = sample_data();
  data.calendars.push_back(sample_calendar("other"));
  data.calendars.back().to = day(2026, 6, 30);
  data.settings.back().item.calendar = "other";
  const Schedule schedule = make_schedule(data, {.rule = 1, .first = contract(2026, 1)});
  EXPECT_EQ(schedule.calendar, std::nullopt);
  EXPECT_EQ(schedule.unknown_from, day(2026, 7, 1)) << "the shorter calendar decides";
}

TEST(ScheduleComparison, ShowsOldBesideNewForEverySettingOfAChangedRule) {
  ScheduleData now = sample_data();
  now.rules.front().item.numbers.roll_offset = 1;
  const Schedule schedule = compare_schedules(sample_data(), now, {.first = contract(2026, 3), .months = 1});
  EXPECT_EQ(contracts_of(schedule), (std::vector<std::string>{"IF 2026-03", "quarterly 2026-03"}));
  ASSERT_TRUE(schedule.lines.front().before);
  EXPECT_EQ(schedule.lines.front().before->roll.date, day(2026, 3, 20));
  EXPECT_EQ(schedule.lines.front().row.dates.roll.date, day(2026, 3, 19));
  EXPECT_EQ(schedule.calendar, sample_calendar());
}

TEST(ScheduleComparison, ContractsOfATouchedSettingThatStayHaveNothingBeside) {
  ScheduleData now = sample_data();
  now.rules.front().item.numbers.move_to_next_trading_day = 0;
  const Schedule schedule = compare_schedules(sample_data(), now, {.first = contract(2026, 1)});
  EXPECT_EQ(schedule.lines.size(), 12u) << "the quarterly contracts do not change";
  EXPECT_FALSE(schedule.lines.at(0).before);
  EXPECT_TRUE(schedule.lines.at(1).before);
}

TEST(ScheduleComparison, FollowsAnotherRuleAndAnotherCalendarOfASettingToo) {
  ScheduleData now = sample_data();
  now.settings.front().item.rule = "spare";
  EXPECT_EQ(compare_schedules(sample_data(), now, {.first = contract(2026, 1)}).lines.front().row.rule, "spare");
  now = sample_data();
  now.calendars.front().closed.clear();
  EXPECT_EQ(compare_schedules(sample_data(), now, {.first = contract(2026, 2), .months = 1}).lines.size(), 1u);
}

TEST(ScheduleComparison, RuleThatNoSettingUsesIsComparedOnTheChosenCalendar) {
  ScheduleData now = sample_data();
  now.rules.back().item.numbers.day_of_month = 16;
  EXPECT_TRUE(compare_schedules(sample_data(), now, {.first = contract(2026, 1)}).lines.empty());
  EXPECT_EQ(compare_schedules(sample_data(), now, {.calendar = "sample", .first = contract(2026, 1)}).lines.size(),
            12u);
}

TEST(ScheduleComparison, RenamedRuleTouchesNothing) {
  ScheduleData now = sample_data();
  now.rules.front().item.name = "renamed";
  for (auto& setting : now.settings) setting.item.rule = "renamed";
  EXPECT_TRUE(compare_schedules(sample_data(), now, {.first = contract(2026, 1)}).lines.empty());
}

TEST(ScheduleComparison, NewAndDeletedSettingsAreLeftOut) {
  ScheduleData now = sample_data();
  now.settings.front().number = 7;
  EXPECT_TRUE(compare_schedules(sample_data(), now, {.first = contract(2026, 1)}).lines.empty());
}

TEST(ScheduleModel, RowsAreThoseOfTheLines) {
  const Schedule schedule = make_schedule(sample_data(), choice_of_setting(2));
  ASSERT_EQ(rows_of(schedule).size(), schedule.lines.size());
  EXPECT_EQ(rows_of(schedule).back().dates, schedule.lines.back().row.dates);
}

TEST(ScheduleModel, MonthsBeforeTheCalendarNameItsFirstDay) {
  ScheduleChoice choice = choice_of_setting(1);
  EXPECT_FALSE(make_schedule(sample_data(), choice).unknown_before);
  const schedule::Calendar calendar = sample_data().calendars.front();
  const std::chrono::year_month_day from{calendar.from};
  choice.first = from.year() / from.month() - std::chrono::months{2};
  choice.months = 2;
  EXPECT_EQ(make_schedule(sample_data(), choice).unknown_before, calendar.from);
  choice.estimates = true;
  EXPECT_EQ(make_schedule(sample_data(), choice).unknown_before, calendar.from);
  const std::chrono::year_month_day to{calendar.to};
  choice.first = to.year() / to.month() + std::chrono::months{1};
  EXPECT_FALSE(make_schedule(sample_data(), choice).unknown_before) << "after it";
  choice.estimates = false;
  EXPECT_FALSE(make_schedule(sample_data(), choice).unknown_before) << "after it";
}

TEST(ScheduleModel, SaysHowFarItHasComeAndCanBeCancelled) {
  ScheduleData now = sample_data();
  now.rules.front().item.numbers.roll_offset = 3;
  std::size_t calls = 0;
  const auto count = [&](std::size_t done, std::size_t all) {
    EXPECT_LT(done, all);
    return ++calls > 0;
  };
  const ScheduleChoice choice{.rule = 1, .first = contract(2026, 1)};
  compare_schedules(sample_data(), now, choice, count);
  EXPECT_EQ(calls, now.rules.size() + now.settings.size());
  calls = 0;
  make_schedule(now, choice, count);
  EXPECT_GT(calls, 0u);
  const auto cancel = [](std::size_t, std::size_t) { return false; };
  EXPECT_THROW(compare_schedules(sample_data(), now, choice, cancel), schedule::Cancelled);
  EXPECT_THROW(make_schedule(now, choice, cancel), schedule::Cancelled);
}

}  // namespace
}  // namespace workbench
