#pragma once

#include <windows.h>

namespace base {

/// Holds a lock of the system for a scope.
template <class Lock, auto acquire, auto release>
class ScopedLock {
 public:
  explicit ScopedLock(Lock& lock) noexcept : lock_(lock) { acquire(&lock_); }
  ~ScopedLock() { release(&lock_); }
  ScopedLock(const ScopedLock&) = delete;
  ScopedLock& operator=(const ScopedLock&) = delete;

 private:
  Lock& lock_;
};

using ScopedCriticalSection = ScopedLock<CRITICAL_SECTION, &EnterCriticalSection, &LeaveCriticalSection>;
using ScopedSharedLock = ScopedLock<SRWLOCK, &AcquireSRWLockShared, &ReleaseSRWLockShared>;
using ScopedExclusiveLock = ScopedLock<SRWLOCK, &AcquireSRWLockExclusive, &ReleaseSRWLockExclusive>;

}  // namespace base
