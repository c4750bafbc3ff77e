#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <utility>

#include "ImportPatch.h"

namespace test_support {

/// While it lives, a module's calls of one imported function are counted and may run a function of the test instead:
/// that is how a system call fails on demand. Probes of one function nest; they are created and destroyed on one
/// thread, and any thread may call. Declared with ZD_IMPORT_PROBE.
template <FunctionName name, class Pointer>
class ImportProbe;

template <FunctionName name, class Result, class... Arguments>
class ImportProbe<name, Result(WINAPI*)(Arguments...)> {
 public:
  using Function = std::function<Result(Arguments...)>;

  /// Probes this program by default. Throws `std::runtime_error` when the module does not import the function.
  explicit ImportProbe(HMODULE module = GetModuleHandleW(nullptr)) : patch_(module, name.text, called) {}
  ImportProbe(const ImportProbe&) = delete;
  ImportProbe& operator=(const ImportProbe&) = delete;

  int calls() const { return calls_; }

  /// From now on `replacement` is called instead.
  void replace(Function replacement) { replacement_ = std::move(replacement); }

  /// The call with that number, counted from 1 since the probe was created, returns `failure`; 0 means every call.
  void fail(int number, Result failure, DWORD last_error = ERROR_NOT_ENOUGH_MEMORY) {
    replace([this, number, failure, last_error](Arguments... arguments) {
      if (number != 0 && number != calls_) return original(arguments...);
      SetLastError(last_error);
      return failure;
    });
  }

  Result original(Arguments... arguments) const {
    return reinterpret_cast<Result(WINAPI*)(Arguments...)>(patch_.original())(arguments...);
  }

 private:
  /// Activates its probe: the replaced function calls it.
  struct Activation {
    explicit Activation(ImportProbe* probe) : outer(std::exchange(active_, probe)) {}
    ~Activation() { active_ = outer; }
    ImportProbe* outer;
  };

  static Result WINAPI called(Arguments... arguments) {
    ImportProbe& probe = *active_;
    ++probe.calls_;
    return probe.replacement_ ? probe.replacement_(arguments...) : probe.original(arguments...);
  }

  inline static ImportProbe* active_ = nullptr;

  Function replacement_;
  std::atomic<int> calls_ = 0;
  Activation activation_{this};
  ImportPatch patch_;
};

}  // namespace test_support

/// Declares the type `probe` for the imported function `function`.
// NOLINTNEXTLINE(bugprone-macro-parentheses): names of a type and of a function
#define ZD_IMPORT_PROBE(function, probe) using probe = test_support::ImportProbe<#function, decltype(&function)>
