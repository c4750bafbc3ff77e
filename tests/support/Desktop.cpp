#include "Desktop.h"

#include <windows.h>

#include <string>

namespace test_support {
namespace {

HDESK own_desktop = nullptr;

/// A new thread begins on the desktop on which the process began, where it finds none of the tests' windows and where
/// what it creates is not found.
void NTAPI join_own_desktop(void*, DWORD reason, void*) noexcept {
  if (reason == DLL_THREAD_ATTACH && own_desktop) SetThreadDesktop(own_desktop);
}

/// The system calls the functions of this section whenever a thread begins or ends.
[[gnu::section(".CRT$XLC"), gnu::used]] constinit const PIMAGE_TLS_CALLBACK thread_callback = &join_own_desktop;

}  // namespace

bool move_to_own_desktop() {
  const HWINSTA station = CreateWindowStationW(nullptr, 0, GENERIC_ALL, nullptr);
  if (!station || !SetProcessWindowStation(station)) return false;
  // Window stations without a name may be shared, and programs on one desktop take the foreground from each other.
  const std::wstring name = L"tests-" + std::to_wstring(GetCurrentProcessId());
  own_desktop = CreateDesktopW(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  return own_desktop && SetThreadDesktop(own_desktop);
}

}  // namespace test_support
