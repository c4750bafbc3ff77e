#include <gtest/gtest.h>

#include "ComStrings.h"

namespace platform {
namespace {

TEST(ComStrings, TakenStringIsFreedWithItsHolder) {
  const _bstr_t text = take_string(SysAllocString(L"\u89c4\u5219"));
  EXPECT_STREQ(static_cast<const wchar_t*>(text), L"\u89c4\u5219");
  EXPECT_EQ(take_string(nullptr).length(), 0u);
}

TEST(ComStrings, SameTextComparesCodeUnits) {
  const _bstr_t with_zero = take_string(SysAllocStringLen(L"a\0b", 3));
  const _bstr_t with_other_zero = take_string(SysAllocStringLen(L"a\0c", 3));
  EXPECT_TRUE(same_text(L"a", L"a"));
  EXPECT_TRUE(same_text(_bstr_t(), L""));
  EXPECT_TRUE(same_text(L"", _bstr_t()));
  EXPECT_TRUE(same_text(_bstr_t(), _bstr_t()));
  EXPECT_TRUE(same_text(with_zero, with_zero));
  EXPECT_FALSE(same_text(with_zero, with_other_zero));
  EXPECT_FALSE(same_text(with_zero, L"a"));
  EXPECT_FALSE(same_text(L"a", L"A"));
  EXPECT_FALSE(same_text(L"\u00e9", L"e\u0301"));
  EXPECT_FALSE(same_text(_bstr_t(), L"a"));
}

}  // namespace
}  // namespace platform
