#include <windows.h>
#include <cxxabi.h>

#include <atomic>
#include <utility>

// What the C++ runtime keeps for exceptions, on the system's own means. Its own way goes through a thread library that
// takes memory at the first exception of each thread, ends the process when there is none, and leaves blocks and
// thread-local indexes behind when the module is unloaded.

// The runtime chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)

/// The exceptions of one thread that are caught and not yet left, and how many are in flight.
struct __cxxabiv1::__cxa_eh_globals {
  void* caught;
  unsigned int uncaught;
};

// The runtime keeps 70 KB for exceptions without memory; only this function of it gives them back.
namespace __gnu_cxx {
void __freeres();
}

namespace {

using Globals = __cxxabiv1::__cxa_eh_globals;

void CALLBACK free_globals(void* globals) { HeapFree(GetProcessHeap(), 0, globals); }

/// Made before everything else of the module and therefore the last to go. The thread that loads the module is the one
/// that will call it, so its part is made at once: an exception for lack of memory must not need any.
struct ExceptionSupport {
  ExceptionSupport() { thread_globals(); }
  ~ExceptionSupport() {
    __gnu_cxx::__freeres();
    // The system may give the index to another module at once; an exception of a later destructor must not use it.
    FlsFree(std::exchange(index, FLS_OUT_OF_INDEXES));
  }

  Globals* thread_globals() noexcept {
    if (index == FLS_OUT_OF_INDEXES) return &shared;
    if (void* globals = FlsGetValue(index)) return static_cast<Globals*>(globals);
    if (shared_is_in_use()) return &shared;
    void* made = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Globals));
    if (made && FlsSetValue(index, made)) return static_cast<Globals*>(made);
    free_globals(made);
    sharer = GetCurrentThreadId();
    return &shared;
  }

  /// An exception ends where it began, also when memory has come back meanwhile.
  bool shared_is_in_use() const noexcept {
    return sharer == GetCurrentThreadId() && (shared.caught || shared.uncaught != 0);
  }

  DWORD index = FlsAlloc(free_globals);
  /// Of the threads that come when there is no memory or no index: better than the end of the process.
  Globals shared = {};
  std::atomic<DWORD> sharer = 0;
};

[[gnu::init_priority(101)]] ExceptionSupport support;

}  // namespace

// An exception must not change the last error, which its report tells.
extern "C" Globals* __cxxabiv1::__cxa_get_globals() noexcept {
  const DWORD last_error = GetLastError();
  Globals* globals = support.thread_globals();
  SetLastError(last_error);
  return globals;
}

extern "C" Globals* __cxxabiv1::__cxa_get_globals_fast() noexcept { return __cxxabiv1::__cxa_get_globals(); }
// NOLINTEND(bugprone-reserved-identifier)
