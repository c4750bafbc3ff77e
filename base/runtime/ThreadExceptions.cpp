#include <windows.h>
#include <cxxabi.h>

// Which exceptions a thread handles. The compiler's runtime keeps this in its own form of thread-local storage, which
// takes memory at the first exception of each thread, ends the process when there is none, and leaves blocks and an
// index behind when the module is unloaded. Here it is in the section that the system's loader copies for every thread:
// each copy exists before its thread runs code of the module, threads that are older than the module have one too, and
// the loader frees them. No two threads share a copy, and nothing has to be done when a thread, the module or the
// process ends.

// The runtime, the linker and the C runtime choose these names.
// NOLINTBEGIN(bugprone-reserved-identifier)

/// The exceptions of one thread that are caught and not yet left, and how many are in flight.
struct __cxxabiv1::__cxa_eh_globals {
  void* caught;
  unsigned int uncaught;
};

/// Says which bytes the loader copies, and where it writes the module's entry in each thread's array of copies.
extern "C" const IMAGE_TLS_DIRECTORY _tls_used;
extern "C" const ULONG _tls_index;

namespace {

using Globals = __cxxabiv1::__cxa_eh_globals;

/// What each thread's copy begins as. The linker sorts the sections by name; the copied bytes end at `.tls$ZZZ`.
[[gnu::section(".tls$M")]] Globals initial = {};

/// The copies of this thread, one for each module. Its environment block holds the array's address.
char** thread_copies() noexcept {
  char** copies = nullptr;
  __asm__("movq %%gs:0x58, %0" : "=r"(copies));
  return copies;
}

}  // namespace

extern "C" Globals* __cxxabiv1::__cxa_get_globals() noexcept {
  const ULONG_PTR offset = reinterpret_cast<ULONG_PTR>(&initial) - _tls_used.StartAddressOfRawData;
  return reinterpret_cast<Globals*>(thread_copies()[_tls_index] + offset);
}

extern "C" Globals* __cxxabiv1::__cxa_get_globals_fast() noexcept { return __cxxabiv1::__cxa_get_globals(); }
// NOLINTEND(bugprone-reserved-identifier)
