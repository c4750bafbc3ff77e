#include "Desktop.h"

#include <windows.h>

#include <string>

namespace test_support {
namespace {

HDESK own_desktop = nullptr;

}  // namespace

bool move_to_own_desktop() {
  const HWINSTA station = CreateWindowStationW(nullptr, 0, GENERIC_ALL, nullptr);
  if (!station || !SetProcessWindowStation(station)) return false;
  // Window stations without a name may be shared, and programs on one desktop take the foreground from each other.
  const std::wstring name = L"tests-" + std::to_wstring(GetCurrentProcessId());
  own_desktop = CreateDesktopW(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  return own_desktop && SetThreadDesktop(own_desktop);
}

void join_own_desktop() {
  if (own_desktop) SetThreadDesktop(own_desktop);
}

}  // namespace test_support
