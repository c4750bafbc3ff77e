#pragma once

#include <windows.h>

#include <deque>
#include <set>
#include <string>

#include "FaultLoop.h"
#include "ImportPatch.h"

namespace test_support {

/// The allocators that a module uses.
enum class Memory {
  blocks,  ///< the C runtime's `malloc`, which `operator new` calls
  com,     ///< strings of COM and blocks of its task allocator
  any,
};

/// While it lives, the `number`th allocation of its kind of a loaded module fails, counted from 1. One lives at a time;
/// UI thread only.
class FailingMemory {
 public:
  /// Throws `std::runtime_error` when the module imports no function that allocates so.
  FailingMemory(HMODULE module, std::size_t number, Memory kind = Memory::any,
                FaultDuration duration = FaultDuration::once);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  /// From now on nothing fails.
  void clear_faults();
  /// Whether the allocation that was to fail has come.
  bool has_failed() const;

  /// Every function that can fail.
  static std::set<std::string> functions();

 private:
  std::deque<ImportPatch> patches_;
};

}  // namespace test_support
