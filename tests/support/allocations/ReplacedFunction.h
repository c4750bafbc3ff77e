#pragma once

#include <windows.h>

#include <deque>

#include "ImportPatch.h"

namespace test_support {

/// An imported function, its replacement, and the variable through which the replacement calls the original.
struct ReplacedFunction {
  const char* name;
  void* replacement;
  void** original;

  /// Replaces the function with `Replacement::call`, which finds the original in `Replacement::original`.
  template <class Replacement>
  static ReplacedFunction by(const char* name) {
    return {name, reinterpret_cast<void*>(Replacement::call), reinterpret_cast<void**>(&Replacement::original)};
  }
};

/// Adds a patch for each of the functions that the module imports.
template <class Functions>
void replace_imports(HMODULE module, const Functions& functions, std::deque<ImportPatch>& patches) {
  for (const ReplacedFunction& function : functions) {
    if (!imports(module, function.name)) continue;
    patches.emplace_back(module, function.name, function.replacement);
    *function.original = patches.back().original();
  }
}

}  // namespace test_support
