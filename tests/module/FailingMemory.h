#pragma once

#include <windows.h>

namespace module_test {

/// While it lives, one allocation of a loaded module fails: the `number`th call, counted from 1, of the C runtime's
/// `malloc` through the module's import table answers null. One lives at a time; UI thread only.
class FailingMemory {
 public:
  /// Throws `std::runtime_error` when the module does not import `malloc`.
  FailingMemory(HMODULE module, long number);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  /// From now on nothing fails.
  void heal();
  /// Whether the allocation that was to fail has come.
  bool has_failed() const;

 private:
  void** entry_;
};

}  // namespace module_test
