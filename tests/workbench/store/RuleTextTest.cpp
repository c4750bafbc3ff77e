#include <gtest/gtest.h>

#include "RuleText.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

TEST(RuleText, RulesAreLinesUnderTheirFieldNames) {
  EXPECT_EQ(rules_as_lines({{7, 3, sample_rule(L"gold")}, {8, 1, {.name = L"铜"}}}),
            (std::vector<std::wstring>{
                L"RuleID\tRuleName\tRollOffset\tDayType\tDayMode\tDayOfMonth\tDayMonth\tWeekOrdinal\tWeekday\t"
                L"WeekdayMonth\tMoveToNextTradingDay",
                L"7\tgold\t99\t1\t1\t31\t2\t5\t6\t2\t1", L"8\t铜\t0\t0\t0\t1\t1\t1\t1\t1\t0"}));
}

TEST(RuleText, SettingsAreLinesUnderTheirFieldNames) {
  EXPECT_EQ(settings_as_lines({{L"CU", L"SHFE copper"}, {L"new", L""}}),
            (std::vector<std::wstring>{L"SettingName\tRuleName", L"CU\tSHFE copper", L"new\t"}));
}

TEST(RuleText, WhatBreaksALineIsEscaped) {
  EXPECT_EQ(settings_as_lines({{std::wstring(L"a\tb\nc\0d\x7F", 8), L"back\\slash"}})[1],
            L"a\\u0009b\\u000Ac\\u0000d\\u007F\tback\\\\slash");
  EXPECT_EQ(settings_as_lines({{L"\U0001F4C8\xD83D", L"\xDC00x"}})[1], L"\U0001F4C8\\uD83D\t\\uDC00x");
}

}  // namespace
