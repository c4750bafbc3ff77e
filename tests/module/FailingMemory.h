#pragma once

#include <windows.h>

#include "ImportPatch.h"

namespace module_test {

/// While it lives, one allocation of a loaded module fails: the `number`th, counted from 1, of those by `new` and of
/// those of COM strings. One lives at a time; UI thread only.
class FailingMemory {
 public:
  /// Throws `std::runtime_error` when the module does not import a function that allocates.
  FailingMemory(HMODULE module, long number);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  /// From now on nothing fails.
  void heal();
  /// Whether the allocation that was to fail has come.
  bool has_failed() const;

 private:
  ImportPatch memory_;
  ImportPatch text_;
  ImportPatch text_of_length_;
  ImportPatch text_of_bytes_;
  ImportPatch text_of_number_;
};

}  // namespace module_test
