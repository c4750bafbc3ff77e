#pragma once

#include <windows.h>
#include <comdef.h>

namespace base {

/// The HRESULT of a status that a registry function returns; S_OK for ERROR_SUCCESS.
inline HRESULT hresult_from_status(LSTATUS status) noexcept { return HRESULT_FROM_WIN32(static_cast<DWORD>(status)); }

/// The thread's last error as an HRESULT, to be asked for right after the call that failed. Always a failure: E_FAIL
/// when that call set no error.
inline HRESULT last_failure() noexcept {
  const DWORD error = GetLastError();
  return error != ERROR_SUCCESS ? HRESULT_FROM_WIN32(error) : E_FAIL;
}

/// Throws a failure as a `_com_error`.
inline void throw_if_failed(HRESULT hresult) {
  if (FAILED(hresult)) throw _com_error(hresult);
}

/// Throws `last_failure` as a `_com_error`.
[[noreturn]] inline void throw_last_failure() { throw _com_error(last_failure()); }

}  // namespace base
