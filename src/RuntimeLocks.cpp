#include <windows.h>
#include <pthread.h>

// The lock of the memory that the C++ runtime keeps for exceptions when there is no other. The thread library's own
// lock takes memory when it is first held: without any, the exception would end in another one, and that in the next,
// until the stack is used up. The system's lock is as large and needs nothing.

namespace {

static_assert(sizeof(pthread_mutex_t) == sizeof(SRWLOCK));

PSRWLOCK lock_of(pthread_mutex_t* mutex) { return reinterpret_cast<PSRWLOCK>(mutex); }

}  // namespace

extern "C" int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
  InitializeSRWLock(lock_of(mutex));
  return 0;
}

extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) {
  // A static one begins with a value of the thread library.
  InterlockedCompareExchange64(mutex, 0, PTHREAD_MUTEX_INITIALIZER);
  AcquireSRWLockExclusive(lock_of(mutex));
  return 0;
}

extern "C" int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(lock_of(mutex));
  return 0;
}

extern "C" int pthread_mutex_destroy(pthread_mutex_t*) { return 0; }
