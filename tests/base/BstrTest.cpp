#include <gtest/gtest.h>

#include "Bstr.h"

namespace base {
namespace {

TEST(Bstr, HoldsATextWithItsZeros) {
  const std::wstring_view text(L"a\0\u89c4", 3);
  const OwnedBstr bstr(create_bstr(text));
  EXPECT_EQ(SysStringLen(bstr.get()), 3u);
  EXPECT_EQ(view_of(bstr.get()), text);
}

TEST(Bstr, ThatIsNullIsAnEmptyText) {
  EXPECT_EQ(view_of(nullptr), L"");
  EXPECT_NE(view_of(nullptr).data(), nullptr);
}

TEST(Bstr, OfAnEmptyTextIsNotNull) {
  const OwnedBstr bstr(create_bstr({}));
  EXPECT_TRUE(bstr);
  EXPECT_EQ(view_of(bstr.get()), L"");
}

}  // namespace
}  // namespace base
