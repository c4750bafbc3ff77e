#pragma once

#include <comdef.h>

namespace test_support {

/// The HRESULT of the `_com_error` that a call throws; S_OK when it throws none.
template <class Call>
HRESULT thrown_by(const Call& call) {
  try {
    call();
  } catch (const _com_error& error) {
    return error.Error();
  }
  return S_OK;
}

}  // namespace test_support
