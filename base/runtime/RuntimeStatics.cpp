#include <windows.h>
#include <cxxabi.h>

// How two threads that come to a static variable of a function make it once, on the system's own locks. The runtime's
// way goes through a thread library, which leaves blocks and a thread-local index behind when the module is unloaded.

namespace {

/// What the compiler keeps for each variable; it looks at `made` before it calls.
struct Guard {
  bool made;
  bool in_the_making;
};

SRWLOCK lock = SRWLOCK_INIT;
CONDITION_VARIABLE left = CONDITION_VARIABLE_INIT;

Guard* guard_of(__cxxabiv1::__guard* variable) { return reinterpret_cast<Guard*>(variable); }

void leave(Guard* guard, bool made) {
  AcquireSRWLockExclusive(&lock);
  guard->in_the_making = false;
  __atomic_store_n(&guard->made, made, __ATOMIC_RELEASE);
  ReleaseSRWLockExclusive(&lock);
  WakeAllConditionVariable(&left);
}

}  // namespace

// The compiler chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)

/// Answers whether the caller is to make the variable.
extern "C" int __cxxabiv1::__cxa_guard_acquire(__guard* variable) {
  Guard* guard = guard_of(variable);
  AcquireSRWLockExclusive(&lock);
  while (guard->in_the_making) SleepConditionVariableSRW(&left, &lock, INFINITE, 0);
  const bool missing = !guard->made;
  guard->in_the_making = missing;
  ReleaseSRWLockExclusive(&lock);
  return missing;
}

extern "C" void __cxxabiv1::__cxa_guard_release(__guard* variable) noexcept { leave(guard_of(variable), true); }

extern "C" void __cxxabiv1::__cxa_guard_abort(__guard* variable) noexcept { leave(guard_of(variable), false); }
// NOLINTEND(bugprone-reserved-identifier)
