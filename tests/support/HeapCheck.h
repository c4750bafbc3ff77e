#pragma once

#include <windows.h>
#include <gtest/gtest.h>

namespace test_support {

/// Whether every heap of the process is intact.
bool heaps_are_intact();

/// Fails the test after which a heap of the process is damaged.
class HeapCheck : public testing::EmptyTestEventListener {
 public:
  void OnTestEnd(const testing::TestInfo& test) override;
};

}  // namespace test_support
