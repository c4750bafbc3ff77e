#include <gtest/gtest.h>

#include <utility>

#include "ComStrings.h"
#include "ExpirationRule.h"
#include "RandomCases.h"
#include "StorageTest.h"

namespace {

using test_support::HostRule;

class RuleProperties : public storage_test::StorageTest {
 protected:
  /// A rule of any name and any numbers, as the module holds it and as the host is to store it.
  std::pair<ExpirationRule, HostRule> any_rule() {
    const std::wstring name = random.text(60);
    ExpirationRule rule;
    rule.RuleName = platform::take_string(SysAllocStringLen(name.data(), static_cast<UINT>(name.size())));
    for (long* field : {&rule.RollOffset, &rule.DayType, &rule.DayMode, &rule.DayOfMonth, &rule.DayMonth,
                        &rule.WeekOrdinal, &rule.Weekday, &rule.WeekdayMonth, &rule.MoveToNextTradingDay})
      *field = random.number();
    return {rule,
            {0, name, rule.RollOffset, rule.DayType, rule.DayMode, rule.DayOfMonth, rule.DayMonth, rule.WeekOrdinal,
             rule.Weekday, rule.WeekdayMonth, rule.MoveToNextTradingDay}};
  }

  test_support::RandomCases random;
};

TEST_F(RuleProperties, AnyNameAndAnyNumbersAreAddedUnchanged) {
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(random.trace(round));
    auto [rule, expected] = any_rule();
    host.rules().clear();
    ASSERT_EQ(S_OK, add_rule(block, rule, expected.id));
    ASSERT_EQ(std::vector{expected}, host.rules());
  }
}

TEST_F(RuleProperties, AnyNameAndAnyNumbersReplaceThoseOfTheRuleWithAnyNumber) {
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(random.trace(round));
    auto [rule, expected] = any_rule();
    expected.id = random.number();
    const HostRule other = {expected.id ^ 2, L"other"};
    host.rules() = {other, {expected.id, L"before"}};
    ASSERT_EQ(S_OK, update_rule(block, expected.id, rule));
    ASSERT_EQ((std::vector{other, expected}), host.rules());
  }
}

}  // namespace
