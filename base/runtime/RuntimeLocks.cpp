#include <pthread.h>

// The C++ runtime locks the memory that it keeps for exceptions when there is no other. The lock itself takes memory
// when it is first held: without any, the exception would end in another one, and that in the next, until the stack is
// used up. The linker leads the runtime here when it makes the lock, at the start of the module.

// The linker chooses these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);

/// Makes a mutex and holds it once.
extern "C" int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) {
  const int error = __real_pthread_mutex_init(mutex, attributes);
  if (error == 0 && pthread_mutex_lock(mutex) == 0) pthread_mutex_unlock(mutex);
  return error;
}
// NOLINTEND(bugprone-reserved-identifier)
