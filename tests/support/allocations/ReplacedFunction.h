#pragma once

#include <windows.h>

#include <algorithm>
#include <deque>

#include "ImportPatch.h"

namespace test_support {

/// The name of a function as a template's argument.
template <std::size_t size>
struct FunctionName {
  constexpr FunctionName(const char (&given)[size]) { std::copy_n(given, size, text); }
  char text[size] = {};
};

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
