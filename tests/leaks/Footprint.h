#pragma once

#include <cstddef>

namespace leaks_test {

/// What this process holds of memory.
struct Footprint {
  std::size_t heap_blocks;    ///< blocks in use of all heaps
  std::size_t private_bytes;  ///< committed memory that belongs to this process alone
};

/// Fails the test when a heap or the process cannot be measured.
Footprint footprint();

}  // namespace leaks_test
