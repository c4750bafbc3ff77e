#include <gtest/gtest.h>

#include <utility>

#include "Bstr.h"
#include "ComStrings.h"
#include "Depth.h"
#include "ExpirationRule.h"
#include "RandomCases.h"
#include "StorageTest.h"

namespace {

using test_support::HostRule;

class RuleProperties : public storage_test::StorageTest {
 protected:
  /// A rule of any name and any numbers, as the module holds it and as the host is to get it.
  std::pair<ExpirationRule, HostRule> any_rule() {
    const std::wstring name = random.text(60);
    ExpirationRule rule;
    rule.RuleName = platform::take_string(base::create_bstr(name));
    HostRule expected(0, name);
    for (std::size_t i = 0; i < rule_numbers.size(); ++i)
      expected.*workbench::rule_columns[i].value = rule.*rule_numbers[i].member = random.number();
    return {rule, expected};
  }

  test_support::RandomCases random;
};

TEST_F(RuleProperties, AnyNameAndAnyNumbersReachTheHostUnchangedAsANewRule) {
  for (int round = 0; round < test_support::repetitions(1000, 100); ++round) {
    SCOPED_TRACE(random.trace(round));
    auto [rule, expected] = any_rule();
    host.saves().clear();
    add_rule(block, rule, expected.id);
    expected.id = 0;
    ASSERT_EQ(std::vector{expected}, host.saves());
  }
}

TEST_F(RuleProperties, AnyNameAndAnyNumbersReachTheHostUnchangedForTheRuleWithAnyNumber) {
  for (int round = 0; round < test_support::repetitions(1000, 100); ++round) {
    SCOPED_TRACE(random.trace(round));
    auto [rule, expected] = any_rule();
    expected.id = random.number();
    host.saves().clear();
    update_rule(block, expected.id, rule);
    ASSERT_EQ(std::vector{expected}, host.saves());
  }
}

}  // namespace
