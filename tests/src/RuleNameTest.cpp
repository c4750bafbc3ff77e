#include <gmock/gmock.h>

#include <string>

#include "RuleName.h"

namespace zd_expiration_rule_plugin {
namespace {

bool is_listed(wchar_t unit) {
  const std::wstring white_space_and_star = L" \t\n\v\f\r*";
  return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z') || (unit >= L'0' && unit <= L'9') ||
         white_space_and_star.find(unit) != std::wstring::npos;
}

TEST(RuleName, AllowsLettersDigitsWhiteSpaceAndTheAsteriskOfAllUnits) {
  for (int unit = 0; unit <= 0xFFFF; ++unit) {
    const auto character = static_cast<wchar_t>(unit);
    EXPECT_EQ(!is_listed(character), has_invalid_name_characters({&character, 1})) << "unit " << unit;
  }
}

TEST(RuleName, LooksAtEveryUnit) {
  EXPECT_FALSE(has_invalid_name_characters(L""));
  EXPECT_FALSE(has_invalid_name_characters(L"IF 2506*"));
  EXPECT_TRUE(has_invalid_name_characters(L"-IF"));
  EXPECT_TRUE(has_invalid_name_characters(L"I-F"));
  EXPECT_TRUE(has_invalid_name_characters(L"IF-"));
}

TEST(RuleName, LooksBehindANullUnit) {
  EXPECT_TRUE(has_invalid_name_characters(std::wstring_view(L"A\0B", 3)));
  EXPECT_TRUE(has_invalid_name_characters(std::wstring_view(L"\0", 1)));
}

}  // namespace
}  // namespace zd_expiration_rule_plugin
