#include <gtest/gtest.h>

#include "TextEncoding.h"

namespace base {
namespace {

constexpr wchar_t lone_surrogate[] = {L'a', 0xD800, L'b', 0};

TEST(TextEncoding, WellFormedTextIsConvertedBothWays) {
  using namespace std::string_view_literals;
  const std::pair<std::wstring_view, std::string_view> texts[] = {
      {L"", ""},
      {L"IF quarter", "IF quarter"},
      {L"\u89c4\u5219", "\xe8\xa7\x84\xe5\x88\x99"},
      {L"\xD83D\xDE00", "\xf0\x9f\x98\x80"},
      {L"a\0b"sv, "a\0b"sv},
  };
  for (const auto& [utf16, utf8] : texts) {
    EXPECT_EQ(to_utf8(utf16), utf8);
    EXPECT_EQ(from_utf8(utf8), utf16);
  }
}

TEST(TextEncoding, WhatIsNotWellFormedIsReplaced) {
  EXPECT_EQ(to_utf8(lone_surrogate),
            "a\xef\xbf\xbd"
            "b");
  EXPECT_EQ(from_utf8("a\xff"
                      "b"),
            L"a\uFFFD"
            L"b");
}

}  // namespace
}  // namespace base
