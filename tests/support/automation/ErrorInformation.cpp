#include "ErrorInformation.h"

#include <comdef.h>
#include <gtest/gtest.h>
#include <oleauto.h>

#include "ComPtr.h"

namespace test_support {

void leave_error_information() {
  base::ComPtr<ICreateErrorInfo> error;
  ASSERT_EQ(S_OK, CreateErrorInfo(&error));
  const _bstr_t text = L"the failure of another object";
  error->SetDescription(text.copy(false));
  ASSERT_EQ(S_OK, SetErrorInfo(0, base::query<IErrorInfo>(error)));
}

bool has_error_information() {
  base::ComPtr<IErrorInfo> error;
  return GetErrorInfo(0, &error) == S_OK;
}

}  // namespace test_support
