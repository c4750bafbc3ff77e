#include <algorithm>

#include "Bstr.h"
#include "ComStrings.h"
#include "ExpirationRule.h"
#include "RuleRecord.h"
#include "StorageTest.h"
#include "zdStorageGetFieldHelper.h"

namespace storage_test {
namespace {

using test_support::HostRule;
using testing::ElementsAre;
using testing::IsEmpty;

// Module and reference host have the same fields in the order of the rule service's arguments.
static_assert(std::ranges::equal(rule_numbers, workbench::rule_columns, {}, &RuleNumber::field,
                                 &workbench::RuleColumn::field));

class NewRuleRow : public StorageTest {
 protected:
  IkvTablePtr create() {
    return create_new_rule_row([] { return _bstr_t(L"New"); });
  }
};

TEST_F(NewRuleRow, IsWrittenFieldByFieldWithoutTheDayMode) {
  const IkvTablePtr row = create();
  EXPECT_THAT(
      host.calls().all("IkvField::"),
      ElementsAre("IkvField::SetText(1077, \"New\")", "IkvField::SetLong(1078, 0)", "IkvField::SetLong(1079, 0)",
                  "IkvField::SetLong(1081, 1)", "IkvField::SetLong(1082, 1)", "IkvField::SetLong(1083, 1)",
                  "IkvField::SetLong(1084, 1)", "IkvField::SetLong(1085, 1)", "IkvField::SetLong(1160, 0)"));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(NewRuleRow, IsAppendedAndMadeCurrentAfterTheFieldsAreDeclared) {
  const IkvTablePtr row = create();
  const std::vector<std::string> after_fields(calls().begin() + 13, calls().begin() + 16);
  EXPECT_THAT(after_fields, ElementsAre("IkvTable::AppendRow", "IkvTable::MoveLast", "IkvTable::GetFieldByID(1077)"));
}

TEST_F(NewRuleRow, LoadsTheNameOnceTheRowIsCurrent) {
  std::string last_call;
  create_new_rule_row([&] {
    last_call = calls().back();
    return _bstr_t(L"New");
  });
  EXPECT_EQ("IkvTable::MoveLast", last_call);
}

TEST_F(NewRuleRow, KeepsTheDayModeOfTheHost) {
  host.odd_values()[KVFIELD_DAY_MODE] = 1;
  const IkvTablePtr row = create();
  EXPECT_EQ(1, GetField<long>(row, KVFIELD_DAY_MODE));
  EXPECT_EQ(0, GetField<long>(row, KVFIELD_RULE_ID));
}

TEST_F(NewRuleRow, ThrowsWithoutATable) {
  host.calls().fail("kvTable::CreateInstance", {E_FAIL});
  EXPECT_EQ(E_POINTER, thrown_by([&] { create(); }));
}

TEST_F(NewRuleRow, ReportsEveryWriteWhenTheHostAppendsNoRow) {
  host.calls().fail("IkvTable::AppendRow", {E_FAIL});
  const IkvTablePtr row = create();
  EXPECT_EQ(std::vector<std::string>(9, "ASSERT 8002000b | zdStorageGetFieldHelper.h:212 SetField"), reports());
}

TEST_F(NewRuleRow, IsWrittenFurtherAfterAFieldThatFails) {
  host.calls().fail("IkvField::SetLong(1079, 0)", {E_FAIL});
  const IkvTablePtr row = create();
  EXPECT_EQ("IkvField::SetLong(1160, 0)", calls().back());
  EXPECT_EQ(1u, reports().size());
}

class SavedRule : public StorageTest {
 protected:
  /// Each value is another one, which the host refuses.
  ExpirationRule rule{.RuleName = L"CU",
                      .RollOffset = 110,
                      .DayType = 11,
                      .DayMode = 12,
                      .DayOfMonth = 113,
                      .DayMonth = 14,
                      .WeekOrdinal = 15,
                      .Weekday = 16,
                      .WeekdayMonth = 17,
                      .MoveToNextTradingDay = 18};
  const ExpirationRule storable_rule{.RuleName = L"IF",
                                     .RollOffset = 99,
                                     .DayType = 1,
                                     .DayMode = 1,
                                     .DayOfMonth = 31,
                                     .DayMonth = 2,
                                     .WeekOrdinal = 5,
                                     .Weekday = 6,
                                     .WeekdayMonth = 0,
                                     .MoveToNextTradingDay = 1};
};

TEST_F(SavedRule, IsAddedInTheOrderOfTheRecord) {
  long id = 0;
  EXPECT_EQ(E_INVALIDARG, add_rule(block, rule, id));
  EXPECT_THAT(calls(), ElementsAre("IkvExpirationRuleService::add_rule(\"CU\", 110, 11, 12, 113, 14, 15, 16, 17, 18)"));
}

TEST_F(SavedRule, IsUpdatedUnderItsNumberInTheOrderOfTheRecord) {
  EXPECT_EQ(E_INVALIDARG, update_rule(block, 7, rule));
  EXPECT_THAT(calls(),
              ElementsAre("IkvExpirationRuleService::update_rule(7, \"CU\", 110, 11, 12, 113, 14, 15, 16, 17, 18)"));
}

TEST_F(SavedRule, IsStoredUnderTheNumberThatTheHostGivesOrHas) {
  host.rules() = {{7, L"old"}};
  EXPECT_EQ(S_OK, update_rule(block, 7, storable_rule));
  EXPECT_THAT(host.rules(), ElementsAre(HostRule{7, L"IF", 99, 1, 1, 31, 2, 5, 6, 0, 1}));
  rule = storable_rule;
  rule.RuleName = L"CU";
  long id = 0;
  EXPECT_EQ(S_OK, add_rule(block, rule, id));
  EXPECT_EQ(8, id);
  EXPECT_EQ((HostRule{8, L"CU", 99, 1, 1, 31, 2, 5, 6, 0, 1}), host.rules().back());
}

TEST_F(SavedRule, KeepsTheNumberThatTheHostDoesNotSet) {
  host.calls().fail("IkvExpirationRuleService::add_rule", {S_OK, Fault::Out::untouched});
  long id = -5;
  EXPECT_EQ(S_OK, add_rule(block, rule, id));
  EXPECT_EQ(-5, id);
}

TEST_F(SavedRule, ReturnsTheResultOfTheService) {
  long id = 0;
  for (const HRESULT result : {E_ACCESSDENIED, S_FALSE}) {
    host.calls().fail("IkvExpirationRuleService::add_rule", {result});
    host.calls().fail("IkvExpirationRuleService::update_rule", {result});
    EXPECT_EQ(result, add_rule(block, rule, id));
    EXPECT_EQ(result, update_rule(block, 7, rule));
  }
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(SavedRule, IsSavedWithEveryUnitOfItsName) {
  const std::wstring odd(L"\"%s\" \xD83D\xDE00 \xD800 \x0001 \t\n\0 end", 19);
  rule.RuleName = platform::take_string(base::create_bstr(odd));
  long id = 0;
  add_rule(block, rule, id);
  ASSERT_EQ(1u, host.saves().size());
  EXPECT_EQ(odd, host.saves()[0].name);
}

TEST_F(SavedRule, NeedsARuleService) {
  block.rules = nullptr;
  long id = 0;
  EXPECT_EQ(E_POINTER, thrown_by([&] { add_rule(block, rule, id); }));
  EXPECT_EQ(E_POINTER, thrown_by([&] { update_rule(block, 7, rule); }));
}

}  // namespace
}  // namespace storage_test
