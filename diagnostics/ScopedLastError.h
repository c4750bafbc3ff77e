#pragma once

#include <windows.h>

namespace SnagtrapUtil {

/// Keeps the thread's last-error value and puts it back when it is destroyed.
class ScopedLastError {
 public:
  ScopedLastError() noexcept : value_(GetLastError()) {}
  ~ScopedLastError() { SetLastError(value_); }
  ScopedLastError(const ScopedLastError&) = delete;
  ScopedLastError& operator=(const ScopedLastError&) = delete;

  DWORD value() const noexcept { return value_; }

 private:
  DWORD value_;
};

}  // namespace SnagtrapUtil
