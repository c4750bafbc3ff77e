#include "HeapCheck.h"

#include <algorithm>
#include <vector>

namespace test_support {

bool heaps_are_intact() {
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  heaps.resize(std::min<size_t>(count, heaps.size()));
  return std::all_of(heaps.begin(), heaps.end(), [](HANDLE heap) { return HeapValidate(heap, 0, nullptr); });
}

void HeapCheck::OnTestEnd(const testing::TestInfo&) {
  if (!heaps_are_intact()) ADD_FAILURE() << "a heap of the process is damaged";
}

}  // namespace test_support
