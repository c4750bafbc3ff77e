#include <gtest/gtest.h>

#include <ostream>

#include "RuleFormat.h"

namespace workbench {
namespace {

struct Words {
  const char* name;
  Rule rule;
  std::wstring offset;
  std::wstring day;
  std::wstring move;
};

void PrintTo(const Words& parameter, std::ostream* out) { *out << parameter.name; }

class FormattedRule : public testing::TestWithParam<Words> {};

TEST_P(FormattedRule, ReadsAsASentencePart) {
  EXPECT_EQ(format_offset(GetParam().rule), GetParam().offset);
  EXPECT_EQ(format_rule_day(GetParam().rule), GetParam().day);
  EXPECT_EQ(format_move(GetParam().rule), GetParam().move);
}

INSTANTIATE_TEST_SUITE_P(
    RuleFormat, FormattedRule,
    testing::Values(Words{"DayOfMonth",
                          {.name = L"", .roll_offset = 5, .day_of_month = 15},
                          L"提前 5 个交易日",
                          L"当月第 15 天",
                          L"不顺延"},
                    Words{"CalendarDaysBeforeADayOfTheNextMonth",
                          {.name = L"", .roll_offset = 3, .day_type = 1, .day_of_month = 1, .day_month = 2},
                          L"提前 3 个日历日",
                          L"下月第 1 天",
                          L"不顺延"},
                    Words{"ThirdFridayMovedToTheNextTradingDay",
                          {.name = L"",
                           .day_mode = 1,
                           .week_ordinal = 3,
                           .weekday = 5,
                           .weekday_month = 1,
                           .move_to_next_trading_day = 1},
                          L"指定日当天",
                          L"当月第 3 个星期五",
                          L"下一个交易日"},
                    Words{"LastSundayOfThePreviousMonth",
                          {.name = L"", .day_mode = 1, .week_ordinal = 5, .weekday = 0, .weekday_month = 0},
                          L"指定日当天",
                          L"上月最后一个星期日",
                          L"不顺延"},
                    Words{"ChoicesThatWereNotMade",
                          {.name = L"",
                           .roll_offset = 1,
                           .day_mode = 1,
                           .week_ordinal = -1,
                           .weekday = -1,
                           .weekday_month = -1,
                           .move_to_next_trading_day = -1},
                          L"提前 1 个交易日",
                          L"（未选）第 （未选） 个（未选）",
                          L"（未选）"},
                    Words{"ChoicesBeyondTheirRange",
                          {.name = L"",
                           .roll_offset = 1,
                           .day_type = 1,
                           .day_of_month = 0,
                           .day_month = 3,
                           .move_to_next_trading_day = 2},
                          L"提前 1 个日历日",
                          L"（未选）第 （未选） 天",
                          L"（未选）"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace workbench
