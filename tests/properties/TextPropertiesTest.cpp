#include <gtest/gtest.h>

#include <algorithm>

#include "Depth.h"
#include "RandomCases.h"
#include "RuleDescription.h"
#include "RuleName.h"

namespace {

using namespace zd_expiration_rule_plugin;

TEST(TextProperties, ANameIsRefusedExactlyWhenOneOfItsUnitsIs) {
  test_support::RandomCases random;
  for (int number = 0; number < test_support::repetitions(5000, 500); ++number) {
    SCOPED_TRACE(random.trace(number));
    const std::wstring name = random.text(40);
    const bool any = std::any_of(name.begin(), name.end(), [](wchar_t unit) {
      return has_invalid_name_characters({&unit, 1});
    });
    ASSERT_EQ(any, has_invalid_name_characters(name));
  }
}

TEST(TextProperties, TheSentenceKeepsEveryUnitOfItsTexts) {
  test_support::RandomCases random;
  for (int number = 0; number < test_support::repetitions(5000, 500); ++number) {
    SCOPED_TRACE(random.trace(number));
    RuleDescriptionTexts texts;
    texts.offset = random.text(40);
    texts.week_ordinal = random.text(40);
    texts.closing_direction = random.text(40);
    ASSERT_EQ(L" " + texts.offset + L"    " + texts.week_ordinal + L"     " + texts.closing_direction + L" ",
              describe_rule(texts));
  }
}

}  // namespace
