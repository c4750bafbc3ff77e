#include "DateList.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

std::string messages(const DateList& list) { return messages_of(list.mistakes); }

}  // namespace

TEST(Contract, IsWrittenInManyWays) {
  for (const char* text : {"2026-01", "202601", "2601", "IF2601", "if2601", "CLF26", "clf26", "6EF26", "IF26"})
    EXPECT_EQ(try_parse_contract(text), month("2026-01")) << text;
  EXPECT_EQ(try_parse_contract("cu2010"), month("2020-10"));
  EXPECT_EQ(try_parse_contract("HSI2010"), month("2020-10")) << "I is no month";
  EXPECT_EQ(try_parse_contract("CLZ99"), month("2099-12"));
  EXPECT_EQ(try_parse_contract("cu0012"), month("2000-12"));
  const std::string letters = "FGHJKMNQUVXZ";
  for (std::size_t i = 0; i < letters.size(); ++i)
    EXPECT_EQ(try_parse_contract(std::string("NG") + letters[i] + "25"), month("2025-01") + std::chrono::months(i));
}

TEST(Contract, IsRefusedWhenItsMonthIsNotCertain) {
  for (const char* text : {"",       "F",      "26",       "F26",     "2613",     "2600",  "IF2613",  "CLA26",
                           "CLF6",   "SR601",  "CLZ2010",  "clz2601", "6EF2012",  "20261", "2026-13", "2026/01",
                           "CL F26", "CL-F26", "IF202601", "1F6",     "2026-01 ", "沪2601"})
    EXPECT_FALSE(try_parse_contract(text)) << text;
}

TEST(DateList, IsReadByColumnNames) {
  const DateList list = read_rule_date_list("date,note,rule,contract\n2026-01-16,x,CSI 300,IF2601\n");
  EXPECT_EQ(messages(list), "");
  ASSERT_EQ(list.dates.size(), 1U);
  EXPECT_EQ(list.dates[0].line, 2U);
  EXPECT_EQ(list.dates[0].rule, "CSI 300");
  EXPECT_EQ(list.dates[0].known, (KnownDate{month("2026-01"), day("2026-01-16")}));
  EXPECT_EQ(list.ignored_columns, std::vector<std::string>{"note"});
}

TEST(DateList, MistakesAreReportedWithTheirLines) {
  EXPECT_EQ(messages(read_date_list("contract,date\nx,y\n2601,2026-01-16\n2026-01,2026-01-16\n2602\n")),
            "f:2: expected a contract like 2026-01, 202601, 2601, IF2601 or CLF26; found \"x\"\n"
            "f:2: expected a day like 2026-01-16, from 1900 to 2199; found \"y\"\n"
            "f:4: expected each contract once, found 2026-01 again\n"
            "f:5: expected 2 fields, found 1\n");
  EXPECT_EQ(messages(read_rule_date_list("rule,contract,date\n,2601,2026-01-16\n")),
            "f:2: expected the name of a rule\n");
  EXPECT_EQ(messages(read_date_list("")), "f:1: expected a column contract\nf:1: expected a column date\n");
  EXPECT_EQ(messages(read_date_list("contract,date,date\n")), "f:1: expected the column date only once\n");
}

TEST(DateList, SameContractOfAnotherRuleIsNoRepetition) {
  EXPECT_EQ(messages(read_rule_date_list("rule,contract,date\na,2601,2026-01-16\nb,2601,2026-01-16\n")), "");
}

}  // namespace workbench::schedule
