#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>

namespace test_support {

/// The name of a function as a template's argument.
template <std::size_t size>
struct FunctionName {
  constexpr FunctionName(const char (&given)[size]) { std::copy_n(given, size, text); }
  char text[size] = {};
};

/// Calls `visit` for everything that a loaded module imports, with its name, as in "#17" when it is imported by a
/// number, and the location that holds its address.
void for_each_import(HMODULE module, const std::function<void(const std::string& name, void** entry)>& visit);

/// Whether a loaded module imports a function of this name.
bool imports(HMODULE module, const char* name);

/// Replaces a function that a loaded module imports with another one, for a scope. UI thread only; patches
/// of one function end in the reverse order of their creation.
class ImportPatch {
 public:
  /// `function` must have the type of the imported one. Throws `std::runtime_error` when the module imports none of
  /// this name.
  template <class Function>
  ImportPatch(HMODULE module, const char* name, Function* function)
      : ImportPatch(module, name, reinterpret_cast<void*>(function)) {}
  ImportPatch(HMODULE module, const char* name, void* function);
  /// `entry` is that of the function in the module's import table.
  ImportPatch(void** entry, void* function);
  ~ImportPatch();
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

  /// What the module called until then: the system's function, or that of an earlier patch.
  void* original() const { return original_; }

 private:
  void** entry_;
  void* original_;
};

}  // namespace test_support
