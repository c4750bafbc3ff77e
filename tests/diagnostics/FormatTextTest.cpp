#include <gtest/gtest.h>

#include "DebugRecord.h"
#include "ImportProbe.h"

ZD_IMPORT_PROBE(MultiByteToWideChar, WideningProbe);

namespace {

using SnagtrapUtil::format_narrow_text;
using SnagtrapUtil::format_text;

TEST(FormatText, PercentSTakesWideText) {
  EXPECT_EQ(format_text(L"%s has %d", L"\u89c4\u5219", 3).view(), L"\u89c4\u5219 has 3");
}

TEST(FormatText, EmptyFormatGivesEmptyText) { EXPECT_EQ(format_text(L"").view(), L""); }

TEST(FormatText, LongTextIsNotCut) {
  const std::wstring text(5000, L'x');
  EXPECT_EQ(format_text(L"<%s>", text.c_str()).view(), L"<" + text + L">");
}

TEST(FormatText, NarrowTextIsWidened) { EXPECT_EQ(format_narrow_text("%s %d", "type", 7).view(), L"type 7"); }

TEST(FormatText, NarrowTextThatCannotBeWidenedIsNone) {
  for (const int number : {1, 2}) {
    WideningProbe probe;
    probe.fail(number, 0);
    EXPECT_FALSE(format_narrow_text("type").get());
    EXPECT_EQ(probe.calls(), number);
  }
}

}  // namespace
