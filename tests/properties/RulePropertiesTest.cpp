#include <gtest/gtest.h>

#include <climits>

#include "ComSupport.h"
#include "ExpirationRule.h"
#include "RandomCases.h"
#include "StorageTest.h"

namespace {

class RuleProperties : public storage_test::StorageTest {
 protected:
  long number() {
    static constexpr long extremes[] = {LONG_MIN, LONG_MIN + 1, -1, 0, 1, LONG_MAX - 1, LONG_MAX};
    return random.below(4) ? extremes[random.below(7)] : static_cast<long>(random.bits());
  }

  test_support::RandomCases random;
};

TEST_F(RuleProperties, AnyNameAndAnyNumbersReachTheHostUnchanged) {
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(random.trace(round));
    const std::wstring name = random.text(60);
    ExpirationRule rule;
    rule.RuleName = platform::take_string(SysAllocStringLen(name.data(), static_cast<UINT>(name.size())));
    for (long* field : {&rule.RollOffset, &rule.DayType, &rule.DayMode, &rule.DayOfMonth, &rule.DayMonth,
                        &rule.WeekOrdinal, &rule.Weekday, &rule.WeekdayMonth, &rule.MoveToNextTradingDay})
      *field = number();
    host.rules().clear();
    long id = 0;
    ASSERT_EQ(S_OK, add_rule(block, rule, id));
    const test_support::HostRule expected{id,
                                          name,
                                          rule.RollOffset,
                                          rule.DayType,
                                          rule.DayMode,
                                          rule.DayOfMonth,
                                          rule.DayMonth,
                                          rule.WeekOrdinal,
                                          rule.Weekday,
                                          rule.WeekdayMonth,
                                          rule.MoveToNextTradingDay};
    ASSERT_EQ(1u, host.rules().size());
    ASSERT_EQ(expected, host.rules()[0]);
  }
}

}  // namespace
