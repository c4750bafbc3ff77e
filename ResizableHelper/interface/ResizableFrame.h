#pragma once

#include <windows.h>

namespace resizable {

/// Removes and adds style bits (`index` is GWL_STYLE or GWL_EXSTYLE). Writes only what changes and sends no
/// notification.
void modify_style(HWND window, int index, DWORD remove, DWORD add) noexcept;

/// Gives a top-level dialog a sizing border instead of a modal frame; its client area keeps its size.
void add_sizing_border(HWND dialog) noexcept;

/// Helps the window manager to keep what is still right of a dialog's picture when its frame is calculated.
class NcCalcSizeHandler {
 public:
  /// Called twice per WM_NCCALCSIZE whose wParam is TRUE: first with `after_default` false, then with true and the
  /// result so far.
  void adjust(HWND dialog, bool after_default, NCCALCSIZE_PARAMS* params, LRESULT* result) noexcept;

 private:
  RECT old_client_ = {};
  bool dropping_region_ = false;
};

}  // namespace resizable
