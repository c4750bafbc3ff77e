#include <gtest/gtest.h>

#include <stdexcept>

#include "DispatchObject.h"

namespace workbench {
namespace {

TEST(ComMethod, ReturnsWhatItsBodyReturnsAndAnHresultForWhatItThrows) {
  EXPECT_EQ(com_method([] { return S_FALSE; }), S_FALSE);
  EXPECT_EQ(com_method([]() -> HRESULT { throw _com_error(E_ACCESSDENIED); }), E_ACCESSDENIED);
  EXPECT_EQ(com_method([]() -> HRESULT { throw std::bad_alloc(); }), E_OUTOFMEMORY);
  EXPECT_EQ(com_method([]() -> HRESULT { throw std::runtime_error("of another kind"); }), E_FAIL);
}

}  // namespace
}  // namespace workbench
