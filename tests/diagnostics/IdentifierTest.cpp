#include <objbase.h>
#include <gtest/gtest.h>

#include "InterfaceSupport.h"

KV_UUID(struct, AllDigits, "01234567-89AB-CDEF-abcd-ef0123456789")

namespace diagnostics_test {
namespace {

TEST(Identifier, OfAnInterfaceIsThatOfItsText) {
  IID expected = {};
  ASSERT_EQ(IIDFromString(L"{01234567-89AB-CDEF-ABCD-EF0123456789}", &expected), S_OK);
  EXPECT_EQ(__uuidof(AllDigits), expected);
}

}  // namespace
}  // namespace diagnostics_test
