#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "ImportPatch.h"

namespace bench {

/// What ran since the first counter was created.
struct Counts {
  std::uint64_t calls = 0;     ///< of imported functions
  std::uint64_t messages = 0;  ///< sent to windows of this thread
};

/// Counts while it lives: the calls by which this program and the built module reach other libraries, and the messages
/// that the windows of this thread are sent. One at a time; on the thread of the windows.
class CallCounter {
 public:
  CallCounter();
  ~CallCounter();
  CallCounter(const CallCounter&) = delete;
  CallCounter& operator=(const CallCounter&) = delete;

  static Counts counts() noexcept;

 private:
  void patch_module(HMODULE module);
  /// Machine code that counts and goes on to the function.
  void* counting_entry(void* function);

  std::deque<test_support::ImportPatch> patches_;
  std::vector<std::unique_ptr<void, void (*)(void*)>> pages_;
  std::size_t used_ = 0;
  HHOOK hook_;
};

}  // namespace bench
