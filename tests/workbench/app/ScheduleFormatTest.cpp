#include <gtest/gtest.h>

#include <ostream>

#include "ScheduleFormat.h"
#include "UiLanguage.h"

namespace workbench {
namespace {

using schedule::Basis;
using schedule::Day;

constexpr Day friday{std::chrono::year{2026} / 1 / 16};

TEST(ScheduleFormat, DayHasItsWeekday) {
  EXPECT_EQ(format_day(friday), L"2026-01-16 五");
  EXPECT_EQ(format_day(friday + std::chrono::days{2}), L"2026-01-18 日");
  choose_language(Language::english);
  EXPECT_EQ(format_day(friday), L"2026-01-16 Fr");
}

TEST(ScheduleFormat, EstimateAndUnknownDayLookDifferent) {
  EXPECT_EQ(format_day({friday, Basis::calendar}), L"2026-01-16 五");
  EXPECT_EQ(format_day({friday, Basis::estimate}), L"≈ 2026-01-16 五");
  EXPECT_EQ(format_day(schedule::ContractDay{std::nullopt, Basis::beyond_calendar}), L"—");
}

struct Flags {
  const char* name;
  schedule::ContractDates dates;
  std::uint8_t attention;
  std::wstring words;
};

void PrintTo(const Flags& parameter, std::ostream* out) { *out << parameter.name; }

class FormattedFlags : public testing::TestWithParam<Flags> {};

TEST_P(FormattedFlags, BeginWithWhatNeedsAttention) {
  EXPECT_EQ(format_flags({{"", "", GetParam().dates}, "", GetParam().attention}), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    ScheduleFormat, FormattedFlags,
    testing::Values(
        Flags{"Nothing", {}, attention_none, L""}, Flags{"Moved", {.moved = true}, attention_none, L"闭市顺延"},
        Flags{"ClampedAndMoved", {.clamped = true, .moved = true}, attention_none, L"该月无此日，取月末；闭市顺延"},
        Flags{"Estimate", {.roll = {friday, Basis::estimate}}, attention_none, L"估计"},
        Flags{"ClosedRoll", {.moved = true, .closed = true}, attention_closed_roll, L"! 换月日休市；闭市顺延"},
        Flags{"NotLater", {}, attention_roll_not_later, L"! 不晚于上一合约的换月日"},
        Flags{"BeyondTheCalendar", {}, attention_beyond_calendar, L"! 超出日历"},
        Flags{
            "InvalidFields", {.invalid_fields = 0b101}, attention_no_date, L"! RollOffset 的值无效；DayMode 的值无效"}),
    [](const auto& test) { return test.param.name; });

TEST(ScheduleFormat, EveryReasonIsSaidAndNamesItsSubject) {
  EXPECT_EQ(format_reason({}), L"");
  for (const auto reason : {NoDatesReason::rule_missing, NoDatesReason::no_calendar, NoDatesReason::calendar_missing})
    EXPECT_NE(format_reason({.reason = reason, .subject = "SUBJECT"}).find(L"SUBJECT"), std::wstring::npos);
  EXPECT_NE(format_reason({.reason = NoDatesReason::nothing_selected}).find(L"选择"), std::wstring::npos);
  EXPECT_NE(format_reason({.reason = NoDatesReason::no_rule}).find(L"未指定规则"), std::wstring::npos);
}

TEST(ScheduleFormat, HorizonNamesTheFirstDayThatIsNotKnown) {
  Schedule schedule;
  EXPECT_EQ(format_horizon(schedule, true), L"");
  schedule.unknown_from = friday;
  EXPECT_NE(format_horizon(schedule, true).find(L"2026-01-16"), std::wstring::npos);
  EXPECT_NE(format_horizon(schedule, true).find(L"估计"), std::wstring::npos);
  EXPECT_NE(format_horizon(schedule, false).find(L"未知"), std::wstring::npos);
}

TEST(ScheduleFormat, YearBeginsItsWeeksOnMonday) {
  EXPECT_EQ(year_texts(false).weekdays.front(), L"一");
  EXPECT_EQ(year_texts(false).weekdays.back(), L"日");
  EXPECT_EQ(year_texts(false).before, L"");
  EXPECT_NE(year_texts(true).before, L"");
}

}  // namespace
}  // namespace workbench
