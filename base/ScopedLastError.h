#pragma once

#include <windows.h>

namespace base {

/// Keeps the thread's last error and restores it when it is destroyed.
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

}  // namespace base
