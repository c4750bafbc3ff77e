#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "ScopedFlag.h"

namespace resizable {

/// Where a dialog's placement is kept in the registry: the value `value_name` of the key `path`\`subkey` under `root`.
struct PlacementKey {
  std::wstring path;
  std::wstring subkey;
  std::wstring value_name;
  HKEY root = nullptr;  ///< not owned

  std::wstring key_name() const { return path + L"\\" + subkey; }
};

/// The key from texts that may be null, which read as empty.
PlacementKey placement_key(HKEY root, const wchar_t* path, const wchar_t* subkey, const wchar_t* value_name);

/// The dialog's placement as it is to be kept: never minimised; with `rect_only` shown normally at its present
/// rectangle. Nothing when the system does not report it.
std::optional<WINDOWPLACEMENT> present_placement(HWND dialog, bool rect_only) noexcept;

/// The stored placement as it is, with a proper length field; nothing when there is none of the right type and size.
std::optional<WINDOWPLACEMENT> read_placement(const PlacementKey& key);

/// Stores the given placement, or the dialog's own when null. Lowers the bottom of the given record by one caption
/// height, as it is stored. Returns whether it is stored; nothing is reported, nothing is thrown.
bool store_placement(HWND dialog, const PlacementKey& key, bool rect_only, WINDOWPLACEMENT* given) noexcept;

/// Puts the dialog where the stored placement says, or stores and applies its present one. Returns the result of
/// SetWindowPlacement when there was a stored one, else FALSE.
BOOL restore_placement(HWND dialog, const PlacementKey& key);

/// Pulls a rectangle in screen coordinates onto the nearest monitor and moves it to the monitor under the cursor.
void fit_rect_to_monitor(RECT& rect) noexcept;

}  // namespace resizable

/// Mix-in of a dialog class `T`: remembers in the registry where and how large the dialog was. `T` calls
/// `RestorePlacement` at the end of its WM_INITDIALOG; the dialog frame stores at WM_DESTROY. Registry failures are
/// silent. UI thread only.
template <class T>
class CResizableState {
 public:
  /// Keeps the key for the later save and restores the stored placement. Where there is none, stores the present
  /// placement and opens the dialog one caption height shorter. `bRectOnly` was applied when the placement was stored;
  /// a stored one is restored as it is. Returns the result of SetWindowPlacement when there was a stored placement,
  /// else FALSE. Throws `std::bad_alloc`.
  BOOL RestorePlacement(HKEY root, LPCWSTR path, LPCWSTR subkey, LPCWSTR valueName, BOOL /*bRectOnly*/) {
    key_ = resizable::placement_key(root, path, subkey, valueName);
    const base::ScopedFlag restoring(restoring_);
    return resizable::restore_placement(static_cast<T*>(this)->m_hWnd, key_);
  }

  /// Stores `given`, whose bottom is lowered by one caption height in place, or the dialog's placement when null.
  /// Returns whether it is stored. Throws `std::bad_alloc`.
  bool StorePlacement(HKEY root, LPCWSTR path, LPCWSTR subkey, LPCWSTR valueName, BOOL bRectOnly,
                      WINDOWPLACEMENT* given) {
    return resizable::store_placement(static_cast<T*>(this)->m_hWnd,
                                      resizable::placement_key(root, path, subkey, valueName), bRectOnly != FALSE,
                                      given);
  }

  /// Stores the dialog's placement where it was restored from.
  bool StorePlacement(BOOL bRectOnly) noexcept {
    return resizable::store_placement(static_cast<T*>(this)->m_hWnd, key_, bRectOnly != FALSE, nullptr);
  }

  static void FitRectToMonitor(RECT& rc) noexcept { resizable::fit_rect_to_monitor(rc); }

  /// True while the dialog is being put where it was.
  bool IsRestoring() const noexcept { return restoring_; }

 protected:
  CResizableState() = default;
  ~CResizableState() = default;

 private:
  resizable::PlacementKey key_;
  bool restoring_ = false;
};
