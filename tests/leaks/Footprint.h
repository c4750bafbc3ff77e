#pragma once

#include <windows.h>

#include <cstddef>

namespace leaks_test {

/// What this process holds of memory and of the indexes of which it has few.
struct Footprint {
  std::size_t heap_blocks;    ///< blocks in use of all heaps
  std::size_t private_bytes;  ///< committed memory that belongs to this process alone
  DWORD thread_local_index;   ///< the first that is free
  DWORD fiber_local_index;    ///< the first that is free
};

/// Fails the test when a heap or the process cannot be measured.
Footprint footprint();

/// Whether the process's heap keeps small blocks together in larger ones, each of which counts as one block in use.
bool is_heap_of_low_fragmentation();

}  // namespace leaks_test
