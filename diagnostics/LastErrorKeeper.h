#pragma once

#include <windows.h>

namespace SnagtrapUtil {

/// Keeps the thread's last-error value and puts it back when it is destroyed.
class LastErrorKeeper {
 public:
  LastErrorKeeper() noexcept : value_(GetLastError()) {}
  ~LastErrorKeeper() { SetLastError(value_); }
  LastErrorKeeper(const LastErrorKeeper&) = delete;
  LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

  DWORD value() const noexcept { return value_; }

 private:
  DWORD value_;
};

}  // namespace SnagtrapUtil
