#include <windows.h>

#include <cstdio>

namespace {

/// Moves the program to a window station without a screen before it has any window. Thousands of dialogs open and
/// close here; on a screen each of them would have the display take part.
[[maybe_unused]] const bool is_offscreen = [] {
  constexpr ACCESS_MASK everything = GENERIC_ALL;
  HWINSTA station = CreateWindowStationW(nullptr, 0, everything, nullptr);
  HDESK desktop = nullptr;
  if (station && SetProcessWindowStation(station)) {
    desktop = CreateDesktopW(L"Default", nullptr, nullptr, 0, everything, nullptr);
  }
  const bool moved = desktop && SetThreadDesktop(desktop);
  if (!moved) std::fprintf(stderr, "the dialogs appear on the screen, error %lu\n", GetLastError());
  return moved;
}();

}  // namespace
