#include <gtest/gtest.h>

#include <algorithm>

#include "RandomCases.h"
#include "RegistryScript.h"
#include "RuleDescription.h"
#include "RuleName.h"

namespace {

using namespace zd_expiration_rule_plugin;

TEST(TextProperties, ANameIsRefusedExactlyWhenOneOfItsUnitsIs) {
  test_support::RandomCases random;
  for (int number = 0; number < 5000; ++number) {
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
  for (int number = 0; number < 5000; ++number) {
    SCOPED_TRACE(random.trace(number));
    RuleDescriptionTexts texts;
    texts.offset = random.text(40);
    texts.week_ordinal = random.text(40);
    texts.closing_direction = random.text(40);
    ASSERT_EQ(L" " + texts.offset + L"    " + texts.week_ordinal + L"     " + texts.closing_direction + L" ",
              describe_rule(texts));
  }
}

TEST(ScriptProperties, AMutatedScriptIsReadOrRefused) {
  const std::wstring whole =
      L"HKCR { NoRemove CLSID { ForceRemove '%ID%' = s 'it''s' { val Flags = d 12 val M = s x } } }";
  test_support::RandomCases random;
  int read = 0;
  int refused = 0;
  for (int number = 0; number < 5000; ++number) {
    SCOPED_TRACE(random.trace(number));
    std::wstring script = whole;
    for (unsigned left = 1 + random.below(4); left > 0; --left)
      script.replace(random.below(static_cast<unsigned>(script.size())), random.below(3), random.text(3));
    try {
      platform::parse_registry_script(script, {{L"ID", L"{1}"}});
      ++read;
    } catch (const platform::RegistryScriptError&) {
      ++refused;
    }
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
