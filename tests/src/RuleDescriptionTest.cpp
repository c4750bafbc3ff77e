#include <gmock/gmock.h>

#include <ostream>

#include "RuleDescription.h"

namespace zd_expiration_rule_plugin {
namespace {

/// Texts that differ in every piece and every letter case.
RuleDescriptionTexts lettered_texts() {
  return {L"Aa", L"Bb", L"Cc", L"Dd", L"Ee", true,  L"Ff", L"Gg",
          L"Hh", L"Ii", L"Jj", L"Kk", L"Ll", L"Mm", L"Nn", L"Oo"};
}

struct Case {
  const char* name;
  void (*change)(RuleDescriptionTexts&);
  const wchar_t* sentence;
};

void PrintTo(const Case& row, std::ostream* out) { *out << row.name; }

class RuleDescriptionTable : public testing::TestWithParam<Case> {};

TEST_P(RuleDescriptionTable, Reads) {
  RuleDescriptionTexts texts = lettered_texts();
  GetParam().change(texts);
  EXPECT_EQ(GetParam().sentence, describe_rule(texts));
}

INSTANTIATE_TEST_SUITE_P(
    All, RuleDescriptionTable,
    testing::Values(
        Case{"ByDayOfMonthLowerCasesTypeLabelAndMonth", [](RuleDescriptionTexts&) {},
             L"Aa Bb cc Dd ee Ff Gg hh Mm Nn Oo"},
        Case{"ByWeekdayLowerCasesTypeLabelAndMonth", [](RuleDescriptionTexts& texts) { texts.by_day_of_month = false; },
             L"Aa Bb cc Dd ee Ii Jj Kk ll Mm Nn Oo"},
        Case{"EmptyOffsetLeavesTwoSpaces", [](RuleDescriptionTexts& texts) { texts.offset.clear(); },
             L"Aa  cc Dd ee Ff Gg hh Mm Nn Oo"},
        Case{"EmptySuffixLeavesTwoSpaces", [](RuleDescriptionTexts& texts) { texts.offset_suffix.clear(); },
             L"Aa Bb cc  ee Ff Gg hh Mm Nn Oo"},
        Case{"NoDayTypeLeavesTwoSpaces", [](RuleDescriptionTexts& texts) { texts.day_type.clear(); },
             L"Aa Bb  Dd ee Ff Gg hh Mm Nn Oo"},
        Case{"NothingChosenByDayOfMonth",
             [](RuleDescriptionTexts& texts) { texts.day_of_month = texts.day_month = L""; },
             L"Aa Bb cc Dd ee  Gg  Mm Nn Oo"},
        Case{"NothingChosenByWeekday",
             [](RuleDescriptionTexts& texts) {
               texts.by_day_of_month = false;
               texts.week_ordinal = texts.weekday = texts.weekday_month = L"";
             },
             L"Aa Bb cc Dd ee   Kk  Mm Nn Oo"},
        Case{"NoTextsAtAll", [](RuleDescriptionTexts& texts) { texts = {}; }, L"           "},
        Case{"OtherDirectionChangesNothingElse", [](RuleDescriptionTexts& texts) { texts.closing_direction = L"Next"; },
             L"Aa Bb cc Dd ee Ff Gg hh Mm Next Oo"},
        Case{"TextsThatLookLikeFormatsStayAsTheyAre", [](RuleDescriptionTexts& texts) { texts.offset = L"%s\"%n"; },
             L"Aa %s\"%n cc Dd ee Ff Gg hh Mm Nn Oo"}),
    [](const testing::TestParamInfo<Case>& row) { return row.param.name; });

}  // namespace
}  // namespace zd_expiration_rule_plugin
