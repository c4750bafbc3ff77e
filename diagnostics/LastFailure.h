#pragma once

#include <windows.h>

namespace SnagtrapUtil {

/// The thread's last error as an HRESULT, asked right after a call that failed. Always a failure: E_FAIL when the call
/// left no error.
inline HRESULT last_failure() noexcept {
  const DWORD error = GetLastError();
  return error != ERROR_SUCCESS ? HRESULT_FROM_WIN32(error) : E_FAIL;
}

}  // namespace SnagtrapUtil
