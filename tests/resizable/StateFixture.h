#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "RegistryTree.h"
#include "ResizableState.h"
#include "ScratchRoot.h"
#include "TestWindows.h"

namespace resizable_test {

inline constexpr wchar_t path[] = L"SOFTWARE\\Some Company\\Some Product";
inline constexpr wchar_t subkey[] = L"Windows Placement";
inline constexpr wchar_t key_name[] = L"SOFTWARE\\Some Company\\Some Product\\Windows Placement";
inline constexpr wchar_t value_name[] = L"ZDExpirationRulesDialog";

class StateWindow : public platform::CWindow, public CResizableState<StateWindow> {};

/// The mix-in on a window with a sizing border, with a registry of its own.
class PlacementTest : public testing::Test {
 protected:
  static constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;

  PlacementTest() { window.Attach(owned.get()); }

  BOOL restore() { return window.RestorePlacement(HKEY_CURRENT_USER, path, subkey, value_name, FALSE); }

  bool store(BOOL rect_only = FALSE, WINDOWPLACEMENT* given = nullptr) {
    return window.StorePlacement(HKEY_CURRENT_USER, path, subkey, value_name, rect_only, given);
  }

  /// Writes a value of any type and size where the placement is looked for.
  void write(DWORD type, const void* data, DWORD size) {
    test_support::write_registry_value(HKEY_CURRENT_USER, key_name, value_name, type, data, size);
  }

  void write(const WINDOWPLACEMENT& placement) { write(REG_BINARY, &placement, sizeof placement); }

  /// The bytes of the stored value; none when it is missing or of another type.
  static std::vector<BYTE> stored_bytes() {
    return test_support::registry_bytes(HKEY_CURRENT_USER, key_name, value_name);
  }

  std::optional<WINDOWPLACEMENT> stored() {
    const auto bytes = stored_bytes();
    WINDOWPLACEMENT placement{};
    if (bytes.size() != sizeof placement) return std::nullopt;
    memcpy(&placement, bytes.data(), sizeof placement);
    return placement;
  }

  WINDOWPLACEMENT present() {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(owned.get(), &placement);
    return placement;
  }

  RECT rect() { return test_support::window_rect(owned.get()); }

  static WINDOWPLACEMENT placement_at(const RECT& rect, UINT show = SW_SHOWNORMAL) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    placement.showCmd = show;
    placement.ptMinPosition = placement.ptMaxPosition = {-1, -1};
    placement.rcNormalPosition = rect;
    return placement;
  }

  const LONG caption = GetSystemMetrics(SM_CYCAPTION);
  test_support::ScratchRoot registry{HKEY_CURRENT_USER};
  OwnedWindow owned{CreateWindowExW(0, L"#32770", L"", style, 100, 100, 300, 200, nullptr, nullptr, nullptr, nullptr)};
  StateWindow window;
};

}  // namespace resizable_test
