#include <gtest/gtest.h>

#include "Hresult.h"
#include "ScopedLastError.h"
#include "ThrownBy.h"

namespace base {
namespace {

TEST(Hresult, LastErrorBecomesAFailure) {
  SetLastError(ERROR_ACCESS_DENIED);
  EXPECT_EQ(last_failure(), E_ACCESSDENIED);
  SetLastError(ERROR_SUCCESS);
  EXPECT_EQ(last_failure(), E_FAIL) << "a call that failed without setting an error";
}

TEST(Hresult, RegistryStatusKeepsSuccess) {
  EXPECT_EQ(hresult_from_status(ERROR_SUCCESS), S_OK);
  EXPECT_EQ(hresult_from_status(ERROR_FILE_NOT_FOUND), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
}

TEST(Hresult, OnlyFailuresAreThrown) {
  EXPECT_NO_THROW(throw_if_failed(S_FALSE));
  EXPECT_EQ(test_support::thrown_by([] { throw_if_failed(E_ABORT); }), E_ABORT);
}

TEST(ScopedLastError, RestoresTheErrorOfItsCreation) {
  SetLastError(7);
  {
    const ScopedLastError last_error;
    SetLastError(8);
    EXPECT_EQ(last_error.value(), 7u);
  }
  EXPECT_EQ(GetLastError(), 7u);
}

}  // namespace
}  // namespace base
