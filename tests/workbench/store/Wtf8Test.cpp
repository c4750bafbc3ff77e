#include <gtest/gtest.h>

#include <algorithm>

#include "RandomCases.h"
#include "StoreSamples.h"
#include "Wtf8.h"

using workbench::from_wtf8;
using workbench::to_wtf8;

namespace {

TEST(Wtf8, WellFormedTextIsUtf8) {
  EXPECT_EQ(to_wtf8(L""), "");
  EXPECT_EQ(to_wtf8(L"a\x7F"), "a\x7F");
  EXPECT_EQ(to_wtf8(L"\u0080\u07FF\u0800\uFFFF"), "\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
  EXPECT_EQ(to_wtf8(L"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Wtf8, LoneSurrogatesTakeThreeBytesAndANullTwo) {
  EXPECT_EQ(to_wtf8(L"\xD800"), "\xED\xA0\x80");
  EXPECT_EQ(to_wtf8(L"\xDFFF"), "\xED\xBF\xBF");
  EXPECT_EQ(to_wtf8(std::wstring(1, L'\0')), "\xC0\x80");
}

TEST(Wtf8, EveryTextComesBack) {
  for (const std::wstring& name : awkward_names()) EXPECT_EQ(from_wtf8(to_wtf8(name)), name);
}

TEST(Wtf8, EveryPairOfEdgeUnitsComesBackAndHasItsOwnBytes) {
  const std::wstring edges(L"\0\x01\x7F\x80\u07FF\u0800\xD7FF\xD800\xDBFF\xDC00\xDFFF\xE000\xFFFF", 13);
  std::vector<std::string> seen;
  for (const wchar_t first : edges) {
    for (const wchar_t second : edges) {
      const std::wstring text{first, second};
      seen.push_back(to_wtf8(text));
      EXPECT_EQ(from_wtf8(seen.back()), text);
    }
  }
  std::ranges::sort(seen);
  EXPECT_EQ(std::ranges::adjacent_find(seen), seen.end());
}

TEST(Wtf8, RandomUnitsComeBack) {
  test_support::RandomCases random;
  for (int number = 0; number < 20000; ++number) {
    SCOPED_TRACE(random.trace(number));
    const std::wstring text = random.text_of_surrogates(7);
    ASSERT_EQ(from_wtf8(to_wtf8(text)), text);
  }
}

TEST(Wtf8, BytesOfOthersGiveReplacementCharacters) {
  EXPECT_EQ(from_wtf8("a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(from_wtf8("\x80"), L"\uFFFD");
  EXPECT_EQ(from_wtf8("\xE4\xB8"), L"\uFFFD\uFFFD");
  EXPECT_EQ(from_wtf8("\xC1\x81"), L"\uFFFD\uFFFD");
  EXPECT_EQ(from_wtf8("\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(from_wtf8("\xE4z"), L"\uFFFDz");
}

}  // namespace
