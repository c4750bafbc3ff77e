#include <gtest/gtest.h>

#include "CheckModel.h"
#include "ScheduleSamples.h"

namespace workbench {
namespace {

schedule::DateList list_of(const std::string& lines) {
  return schedule::read_rule_date_list("rule,contract,date\n" + lines);
}

CheckedList checked(const std::string& lines, const CheckChoice& choice = {}) {
  return check_list(sample_data(), list_of(lines), choice);
}

TEST(CheckModel, MatchesAndDifferencesAreCountedPerRule) {
  const CheckedList list = checked("index,2026-01,2026-01-16\nindex,2026-02,2026-02-20\n");
  ASSERT_EQ(list.dates.size(), 2u);
  EXPECT_EQ(list.rules.at("index").matches, 1u);
  EXPECT_EQ(list.rules.at("index").dates, 2u);
  EXPECT_EQ(list.dates.at(1).check.days, 3);
}

TEST(CheckModel, ExplainingDayComesWithItsReason) {
  const CheckedList list = checked("index,2026-02,2026-02-20\n");
  EXPECT_EQ(list.dates.at(0).explained_by, (std::vector<Explanation>{{day(2026, 2, 20), true, "New Year"}}));
}

TEST(CheckModel, DayThatWouldHaveToBeClosedHasNoReason) {
  const CheckedList list = checked("index,2026-01,2026-01-19\n");
  EXPECT_EQ(list.dates.at(0).explained_by, (std::vector<Explanation>{{day(2026, 1, 16), false, ""}}));
}

TEST(CheckModel, SettingSaysWhichDayIsCompared) {
  ScheduleData data = sample_data();
  data.rules.front().item.numbers.roll_offset = 1;
  const schedule::DateList list = list_of("index,2026-01,2026-01-16\n");
  EXPECT_EQ(check_list(data, list, {}).dates.at(0).check.days, -1);
  data.settings.front().item.last_day_is_expiration = true;
  EXPECT_EQ(check_list(data, list, {}).dates.at(0).check.days, 0);
  EXPECT_EQ(check_list(data, list, {.against = schedule::Against::roll}).dates.at(0).check.days, -1);
}

TEST(CheckModel, NearestSettingOfTheRuleCounts) {
  ScheduleData data = sample_data();
  data.rules.front().item.numbers.roll_offset = 1;
  data.settings.front().item.calendar.clear();
  data.settings.push_back({3, {.name = "last", .rule = "index", .calendar = "sample", .last_day_is_expiration = true}});
  const CheckedList list =
      check_list(data, list_of("index,2026-03,2026-03-19\nindex,2026-02,2026-02-23\nindex,2026-06,2026-06-22\n"), {});
  EXPECT_TRUE(list.mistakes.empty());
  ASSERT_EQ(list.dates.size(), 3u);
  EXPECT_EQ(list.dates.at(0).check.days, 0);
  EXPECT_EQ(list.dates.at(1).check.days, 0);
  EXPECT_EQ(list.dates.at(2).check.days, -3);
}

TEST(CheckModel, LinesThatCannotBeComparedAreNamed) {
  const CheckedList list = checked("gone,2026-01,2026-01-16\nspare,2026-01,2026-01-15\nindex,2026-13,2026-01-16\n");
  ASSERT_EQ(list.mistakes.size(), 3u);
  EXPECT_EQ(list.mistakes.at(0), (schedule::Mistake{2, schedule::MistakeKind::unknown_rule, {"gone"}}));
  EXPECT_EQ(list.mistakes.at(1), (schedule::Mistake{3, schedule::MistakeKind::calendar_missing, {"spare"}}));
  EXPECT_EQ(list.mistakes.at(2).line, 4u);
  EXPECT_TRUE(list.dates.empty());
}

TEST(CheckModel, ChosenCalendarServesRulesWithoutSetting) {
  const CheckedList list = checked("spare,2026-01,2026-01-15\n", {.calendar = "sample"});
  EXPECT_EQ(list.rules.at("spare").matches, 1u);
  EXPECT_EQ(checked("spare,2026-01,2026-01-15\n", {.calendar = "gone"}).mistakes.at(0).kind,
            schedule::MistakeKind::unknown_calendar);
}

TEST(CheckModel, RowsAreGroupedByRule) {
  const CheckedList list =
      checked("spare,2026-01,2026-01-15\nindex,2026-01,2026-01-16\nspare,2026-02,2026-02-16\n", {.calendar = "sample"});
  EXPECT_EQ(list.dates.at(0).rule, "index");
  EXPECT_EQ(list.dates.at(2).check.listed.contract, contract(2026, 2));
}

TEST(CheckModel, SettingsThatDoNotDeliverInTheMonthDoNotCount) {
  ScheduleData data = sample_data();
  data.settings.front().item.months = "HMUZ";
  const CheckedList list = check_list(data, list_of("index,2026-01,2026-01-16\nindex,2026-03,2026-03-20\n"), {});
  ASSERT_EQ(list.mistakes.size(), 1u);
  EXPECT_EQ(list.mistakes.at(0),
            (schedule::Mistake{2, schedule::MistakeKind::no_delivery_month, {"index", "2026-01"}}));
  ASSERT_EQ(list.dates.size(), 1u);
  EXPECT_TRUE(list.dates.at(0).check.is_match());
}

TEST(CheckModel, SaysHowFarItHasComeAndCanBeCancelled) {
  std::size_t calls = 0;
  const auto cancel = [&](std::size_t done, std::size_t total) {
    EXPECT_EQ(total, 2u);
    EXPECT_EQ(done, calls);
    return ++calls < 2;
  };
  EXPECT_THROW(check_list(sample_data(), list_of("index,2026-01,2026-01-16\nindex,2026-02,2026-02-20\n"), {}, cancel),
               schedule::Cancelled);
  EXPECT_EQ(calls, 2u);
}

}  // namespace
}  // namespace workbench
