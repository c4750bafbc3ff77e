#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace test_support {

/// While it lives, calls of one imported function from this program are counted and may be answered by the test: that
/// is how a system call fails on demand. `Entry` is the function's place in the import table. One probe per function
/// lives at a time; UI thread only. Made with ZD_IMPORT_PROBE.
template <class Pointer, Pointer* Entry>
class ImportProbe;

template <class Result, class... Arguments, Result(WINAPI** Entry)(Arguments...)>
class ImportProbe<Result(WINAPI*)(Arguments...), Entry> {
 public:
  using Pointer = Result(WINAPI*)(Arguments...);
  using Function = std::function<Result(Arguments...)>;

  ImportProbe() : original_(std::exchange(active(), this), *Entry) { write_entry(&ImportProbe::called); }
  ~ImportProbe() {
    write_entry(original_.second);
    active() = original_.first;
  }
  ImportProbe(const ImportProbe&) = delete;
  ImportProbe& operator=(const ImportProbe&) = delete;

  int calls() const { return calls_; }

  /// From now on `answer` is called instead.
  void replace(Function answer) { answer_ = std::move(answer); }

  /// The call with that number, counted from 1 since the probe was made, answers `failure`; 0 means every call.
  void fail(int number, Result failure, DWORD last_error = ERROR_NOT_ENOUGH_MEMORY) {
    replace([this, number, failure, last_error](Arguments... arguments) {
      if (number != 0 && number != calls_) return original_.second(arguments...);
      SetLastError(last_error);
      return failure;
    });
  }

  Result original(Arguments... arguments) const { return original_.second(arguments...); }

 private:
  static ImportProbe*& active() {
    static ImportProbe* probe = nullptr;
    return probe;
  }

  static Result WINAPI called(Arguments... arguments) {
    ImportProbe& probe = *active();
    ++probe.calls_;
    return probe.answer_ ? probe.answer_(arguments...) : probe.original_.second(arguments...);
  }

  static void write_entry(Pointer function) {
    DWORD protection = 0;
    VirtualProtect(Entry, sizeof *Entry, PAGE_READWRITE, &protection);
    *Entry = function;
    VirtualProtect(Entry, sizeof *Entry, protection, &protection);
  }

  std::pair<ImportProbe*, Pointer> original_;
  Function answer_;
  int calls_ = 0;
};

}  // namespace test_support

/// Declares the type `probe` for the imported function `function`. Stands at namespace scope, outside any namespace.
#define ZD_IMPORT_PROBE(function, probe)           \
  extern "C" decltype(&function) __imp_##function; \
  using probe = test_support::ImportProbe<decltype(&function), &__imp_##function>
