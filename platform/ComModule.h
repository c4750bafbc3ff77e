#pragma once

#include <windows.h>

namespace platform {

/// What the whole module shares: the count of its live objects and server locks, and its one critical section.
class ComModule {
 public:
  /// The whole module shares the one of `instance`.
  ComModule() noexcept;
  ~ComModule();
  ComModule(const ComModule&) = delete;
  ComModule& operator=(const ComModule&) = delete;

  static ComModule& instance() noexcept;

  /// False when the critical section could not be created; the module must not be used then.
  bool initialised() const noexcept { return initialised_; }

  void lock() noexcept { InterlockedIncrement(&locks_); }
  void unlock() noexcept { InterlockedDecrement(&locks_); }
  LONG lock_count() const noexcept { return locks_; }

  CRITICAL_SECTION& section() noexcept { return section_; }

 private:
  CRITICAL_SECTION section_;
  bool initialised_;
  volatile LONG locks_ = 0;
};

}  // namespace platform
