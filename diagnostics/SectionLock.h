#pragma once

#include <windows.h>

namespace SnagtrapUtil {

/// Holds a critical section for a scope.
class SectionLock {
 public:
  explicit SectionLock(CRITICAL_SECTION& section) noexcept : section_(section) { EnterCriticalSection(&section_); }
  ~SectionLock() { LeaveCriticalSection(&section_); }
  SectionLock(const SectionLock&) = delete;
  SectionLock& operator=(const SectionLock&) = delete;

 private:
  CRITICAL_SECTION& section_;
};

}  // namespace SnagtrapUtil
