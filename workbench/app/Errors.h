#pragma once

#include <windows.h>
#include <comdef.h>

namespace workbench {

inline void throw_if_failed(HRESULT hresult) {
  if (FAILED(hresult)) throw _com_error(hresult);
}

/// Throws the thread's last error as a `_com_error`; E_FAIL when a failed call left none.
[[noreturn]] inline void throw_last_error() {
  const DWORD error = GetLastError();
  throw _com_error(error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error));
}

}  // namespace workbench
