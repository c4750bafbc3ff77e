#include "Footprint.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <array>

namespace leaks_test {
namespace {

std::size_t blocks_in_use(HANDLE heap) {
  std::size_t blocks = 0;
  PROCESS_HEAP_ENTRY entry = {};
  EXPECT_TRUE(HeapLock(heap));
  while (HeapWalk(heap, &entry)) {
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ++blocks;
  }
  const DWORD end = GetLastError();
  EXPECT_TRUE(HeapUnlock(heap));
  EXPECT_EQ(static_cast<DWORD>(ERROR_NO_MORE_ITEMS), end);
  return blocks;
}

// The test platform's own account of private memory is always 0.
std::size_t committed_private_bytes() {
  std::size_t bytes = 0;
  const char* address = nullptr;
  MEMORY_BASIC_INFORMATION region = {};
  while (VirtualQuery(address, &region, sizeof region)) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    address = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  EXPECT_GT(bytes, 0u);
  return bytes;
}

DWORD make_fiber_index() { return FlsAlloc(nullptr); }

DWORD free_index(DWORD (*make)(), BOOL(WINAPI* free)(DWORD)) {
  const DWORD index = make();
  EXPECT_TRUE(free(index));
  return index;
}

}  // namespace

Footprint footprint() {
  std::array<HANDLE, 64> heaps = {};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  EXPECT_GT(count, 0u);
  EXPECT_LE(count, heaps.size());
  std::size_t blocks = 0;
  for (DWORD index = 0; index < count && index < heaps.size(); ++index) blocks += blocks_in_use(heaps[index]);
  return {blocks, committed_private_bytes(), free_index(TlsAlloc, TlsFree), free_index(make_fiber_index, FlsFree)};
}

bool is_heap_of_low_fragmentation() {
  constexpr ULONG low_fragmentation = 2;
  ULONG kind = 0;
  return HeapQueryInformation(GetProcessHeap(), HeapCompatibilityInformation, &kind, sizeof kind, nullptr) &&
         kind == low_fragmentation;
}

}  // namespace leaks_test
