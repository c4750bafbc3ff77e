#pragma once

#include <windows.h>

#include <memory>

namespace snagtrap {

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

/// Owns a kernel handle. Null means none.
using UniqueHandle = std::unique_ptr<HANDLE, HandleCloser>;

/// Owns what a function answered that says INVALID_HANDLE_VALUE for none.
inline UniqueHandle own_file(HANDLE file) noexcept {
  return UniqueHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

struct KeyCloser {
  using pointer = HKEY;
  void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};

/// Owns a registry key.
using UniqueKey = std::unique_ptr<HKEY, KeyCloser>;

}  // namespace snagtrap
