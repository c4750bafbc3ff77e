#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <vector>

namespace test_support {

using Bytes = std::vector<std::uint8_t>;

/// Memory that ends where a page starts that cannot be read: a read beyond the end crashes at once.
class GuardedBytes {
 public:
  explicit GuardedBytes(std::size_t capacity)
      : capacity_((capacity + page - 1) / page * page),
        start_(static_cast<std::uint8_t*>(
            VirtualAlloc(nullptr, capacity_ + page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
    DWORD before = 0;
    if (!start_ || !VirtualProtect(start_ + capacity_, page, PAGE_NOACCESS, &before)) {
      throw std::runtime_error("no guarded memory");
    }
  }
  ~GuardedBytes() { VirtualFree(start_, 0, MEM_RELEASE); }
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;

  /// A copy of the bytes at the end of the memory, until the next call.
  std::span<const std::uint8_t> hold(const Bytes& bytes) {
    std::uint8_t* copy = start_ + capacity_ - bytes.size();
    if (!bytes.empty()) std::memcpy(copy, bytes.data(), bytes.size());
    return {copy, bytes.size()};
  }

 private:
  static constexpr std::size_t page = 4096;

  std::size_t capacity_;
  std::uint8_t* start_;
};

}  // namespace test_support
