#include <gtest/gtest.h>

#include "Depth.h"
#include "EscapedText.h"
#include "RandomCases.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

TEST(EscapedText, WhatUtf8OrALineCannotHoldIsEscaped) {
  EXPECT_EQ(to_escaped_text(std::wstring(L"a\tb\0\x7F\\", 6)), L"a\\u0009b\\u0000\\u007F\\\\");
  EXPECT_EQ(to_escaped_text(L"\xD83D\xDCC8\xD83D"), L"\xD83D\xDCC8\\uD83D");
  EXPECT_EQ(to_escaped_text(L"\xFFFE\xFFFF\x80 '\""), L"\xFFFE\xFFFF\x80 '\"");
}

TEST(EscapedText, WhatIsNoEscapedFormIsNoText) {
  for (const wchar_t* wrong : {L"\\", L"a\\", L"\\u", L"\\u000", L"\\u000G", L"\\u000a", L"\\n", L"\\u0041", L"\\u005C",
                               L"\t", L"\x7F", L"\xD800", L"\\uD83D\\uDCC8", L"\\U0009"})
    EXPECT_EQ(from_escaped_text(wrong), std::nullopt) << testing::PrintToString(wrong);
  EXPECT_EQ(from_escaped_text(L"\\\\uD83D\\uDCC8"), L"\\uD83D\xDCC8");
}

TEST(EscapedText, AnyTextComesBack) {
  for (const std::wstring& name : awkward_names()) EXPECT_EQ(from_escaped_text(to_escaped_text(name)), name);
  test_support::RandomCases random;
  for (int number = 0; number < test_support::repetitions(100'000, 2'000); ++number) {
    const std::wstring text = random.below(2) ? random.text(20) : random.text_of_surrogates(20);
    ASSERT_EQ(from_escaped_text(to_escaped_text(text)), text) << random.trace(number);
  }
}

}  // namespace
