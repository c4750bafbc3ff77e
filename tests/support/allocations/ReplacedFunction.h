#pragma once

#include <windows.h>

#include <deque>

#include "ImportPatch.h"

namespace test_support {

/// An imported function, what stands in its place, and where that finds what the module called before.
struct ReplacedFunction {
  const char* name;
  void* replacement;
  void** original;

  /// Puts `Replacement::call` in the place of the function; it finds the original in `Replacement::original`.
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
