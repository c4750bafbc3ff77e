#include "Desktop.h"

#include <windows.h>

namespace test_support {

bool move_to_own_desktop() {
  const HWINSTA station = CreateWindowStationW(nullptr, 0, GENERIC_ALL, nullptr);
  if (!station || !SetProcessWindowStation(station)) return false;
  const HDESK desktop = CreateDesktopW(L"Default", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  return desktop && SetThreadDesktop(desktop);
}

}  // namespace test_support
