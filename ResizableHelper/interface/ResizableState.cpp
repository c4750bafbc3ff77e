#include "ResizableState.h"

#include <new>

#include "Owned.h"
#include "ResizableGeometry.h"

namespace resizable {

namespace {

static_assert(sizeof(WINDOWPLACEMENT) == 44, "the stored record has 44 bytes");

constexpr UINT opening_flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

LONG caption_height() noexcept { return GetSystemMetrics(SM_CYCAPTION); }

RECT work_area(HMONITOR monitor) noexcept {
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  if (!GetMonitorInfoW(monitor, &info)) SystemParametersInfoW(SPI_GETWORKAREA, 0, &info.rcWork, 0);
  return info.rcWork;
}

HMONITOR monitor_under_cursor() noexcept {
  POINT cursor = {};
  GetCursorPos(&cursor);
  return MonitorFromPoint(cursor, MONITOR_DEFAULTTONEAREST);
}

/// Opens or creates the key; the second open verifies write access.
base::RegistryKey writable_key(HKEY root, const wchar_t* name) noexcept {
  base::RegistryKey first;
  if (RegOpenKeyExW(root, name, 0, KEY_WRITE, first.put()) != ERROR_SUCCESS) {
    RegCreateKeyExW(root, name, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, first.put(), nullptr);
  }
  base::RegistryKey key;
  if (RegOpenKeyExW(root, name, 0, KEY_WRITE, key.put()) != ERROR_SUCCESS) return {};
  if (RegCloseKey(first.detach()) != ERROR_SUCCESS) return {};
  return key;
}

CSize smallest_size(HWND dialog) noexcept {
  MINMAXINFO info = {};
  info.ptMinTrackSize = {GetSystemMetrics(SM_CXMINTRACK), GetSystemMetrics(SM_CYMINTRACK)};
  SendMessageW(dialog, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  return {info.ptMinTrackSize.x, info.ptMinTrackSize.y};
}

BOOL apply_stored(HWND dialog, WINDOWPLACEMENT placement) noexcept {
  raise_bottom(placement.rcNormalPosition, caption_height());
  // The system enlarges a rectangle below the minimum size after it was placed, possibly beyond the monitor's edge.
  placement.rcNormalPosition = held_rect(placement.rcNormalPosition, smallest_size(dialog), caption_height());
  fit_rect_to_monitor(placement.rcNormalPosition);
  return SetWindowPlacement(dialog, &placement);
}

void apply_first(HWND dialog, const RECT& rect) noexcept {
  const CSize size = size_of(rect);
  const bool keeps_size = (GetWindowLongPtrW(dialog, GWL_STYLE) & DS_MODALFRAME) != 0;
  SetWindowPos(dialog, nullptr, rect.left, rect.top, size.cx, size.cy, opening_flags | (keeps_size ? SWP_NOSIZE : 0U));
  ShowWindow(dialog, SW_SHOW);
}

std::optional<WINDOWPLACEMENT> system_placement(HWND dialog) noexcept {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof placement;
  if (!GetWindowPlacement(dialog, &placement)) return std::nullopt;
  return placement;
}

}  // namespace

PlacementKey placement_key(HKEY root, const wchar_t* path, const wchar_t* subkey, const wchar_t* value_name) {
  const auto text = [](const wchar_t* given) { return given ? given : L""; };
  return {text(path), text(subkey), text(value_name), root};
}

std::optional<WINDOWPLACEMENT> present_placement(HWND dialog, bool rect_only) noexcept {
  auto placement = system_placement(dialog);
  if (!placement) return placement;
  placement->showCmd = reopening_command(*placement, IsIconic(dialog) != FALSE, rect_only);
  if (rect_only) GetWindowRect(dialog, &placement->rcNormalPosition);
  return placement;
}

std::optional<WINDOWPLACEMENT> read_placement(const PlacementKey& key) {
  base::RegistryKey opened;
  if (RegOpenKeyExW(key.root, key.key_name().c_str(), 0, KEY_READ, opened.put()) != ERROR_SUCCESS) return std::nullopt;
  WINDOWPLACEMENT placement = {};
  DWORD type = REG_NONE;
  DWORD size = sizeof placement;
  const LSTATUS status = RegQueryValueExW(opened.get(), key.value_name.c_str(), nullptr, &type,
                                          reinterpret_cast<BYTE*>(&placement), &size);
  if (status != ERROR_SUCCESS || type != REG_BINARY || size != sizeof placement) return std::nullopt;
  // The length field in the stored value is not trusted.
  placement.length = sizeof placement;
  return placement;
}

bool store_placement(HWND dialog, const PlacementKey& key, bool rect_only, WINDOWPLACEMENT* given) noexcept {
  try {
    const base::RegistryKey opened = writable_key(key.root, key.key_name().c_str());
    if (!opened) return false;
    std::optional<WINDOWPLACEMENT> own;
    if (!given) own = present_placement(dialog, rect_only);
    if (!given && !own) return false;
    WINDOWPLACEMENT& placement = given ? *given : *own;
    lower_bottom(placement.rcNormalPosition, caption_height());
    return RegSetValueExW(opened.get(), key.value_name.c_str(), 0, REG_BINARY,
                          reinterpret_cast<const BYTE*>(&placement), sizeof placement) == ERROR_SUCCESS;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

BOOL restore_placement(HWND dialog, const PlacementKey& key) {
  if (const auto stored = read_placement(key)) return apply_stored(dialog, *stored);
  auto present = system_placement(dialog);
  if (!present) return FALSE;
  store_placement(dialog, key, false, &*present);
  apply_first(dialog, present->rcNormalPosition);
  return FALSE;
}

void fit_rect_to_monitor(RECT& rect) noexcept {
  const HMONITOR nearest = MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST);
  const HMONITOR under_cursor = monitor_under_cursor();
  const RECT work = work_area(nearest);
  rect = fitted_rect(rect, work, under_cursor == nearest ? work : work_area(under_cursor));
}

}  // namespace resizable
