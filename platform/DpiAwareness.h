#pragma once

#include <windows.h>

namespace platform {

/// While it lives, a thread that was aware of each monitor's DPI is aware of the system's DPI only, and the windows
/// that it creates stay so. The system then scales those windows as a whole; otherwise a change of DPI would resize
/// controls and replace fonts behind a layout that measured them once. A thread with another awareness, and a system
/// without these functions, stay as they are. The thread that constructs it must destroy it.
class ScopedSystemDpiAwareness {
 public:
  ScopedSystemDpiAwareness() noexcept;
  ScopedSystemDpiAwareness(const ScopedSystemDpiAwareness&) = delete;
  ScopedSystemDpiAwareness& operator=(const ScopedSystemDpiAwareness&) = delete;
  ~ScopedSystemDpiAwareness();

 private:
  decltype(&::SetThreadDpiAwarenessContext) set_context_ = nullptr;
  DPI_AWARENESS_CONTEXT previous_ = nullptr;  ///< null while nothing was changed
};

}  // namespace platform
