#pragma once

#include <windows.h>

#include "Owned.h"

namespace tour {

/// Memory in the process of a window, for messages that carry a pointer and that the system does not translate.
class RemoteMemory {
 public:
  /// Throws `std::runtime_error` when the process cannot be opened or has no memory.
  RemoteMemory(HWND window, size_t size);
  RemoteMemory(const RemoteMemory&) = delete;
  RemoteMemory& operator=(const RemoteMemory&) = delete;
  ~RemoteMemory();

  /// The address in the other process, `offset` bytes from the beginning.
  void* at(size_t offset) const noexcept { return static_cast<char*>(memory_) + offset; }

  void write(size_t offset, const void* data, size_t size) const;
  void read(size_t offset, void* data, size_t size) const;

 private:
  base::KernelHandle process_;
  void* memory_;
};

}  // namespace tour
