#include "ResizableFrame.h"

#include "ChildLayout.h"
#include "ResizableGeometry.h"

namespace resizable {

namespace {

constexpr UINT border_flags = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER | SWP_NOSENDCHANGING;

DWORD style_of(HWND window, int index) noexcept { return static_cast<DWORD>(GetWindowLongPtrW(window, index)); }

/// The window size around a client area, as the dialog itself calculates its frame: a menu bar of several lines or a
/// frame of its own are beyond the system's general calculation.
CSize window_size_for(HWND dialog, const RECT& client, DWORD ex_style) noexcept {
  RECT window = client;
  AdjustWindowRectEx(&window, style_of(dialog, GWL_STYLE), IsMenu(GetMenu(dialog)), ex_style);
  RECT inner = window;
  SendMessageW(dialog, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&inner));
  const CSize wanted = size_of(client);
  const CSize found = size_of(inner);
  const CSize outer = size_of(window);
  return {outer.cx + wanted.cx - found.cx, outer.cy + wanted.cy - found.cy};
}

/// major * 256 + minor.
unsigned system_version() noexcept {
  const DWORD version = GetVersion();
  return LOBYTE(version) * 256U + HIBYTE(version);
}

bool changes_size(const NCCALCSIZE_PARAMS* params) noexcept {
  return params && params->lppos && !(params->lppos->flags & SWP_NOSIZE);
}

}  // namespace

void modify_style(HWND window, int index, DWORD remove, DWORD add) noexcept {
  const DWORD old_style = style_of(window, index);
  const DWORD new_style = (old_style & ~remove) | add;
  if (new_style != old_style) SetWindowLongPtrW(window, index, static_cast<LONG_PTR>(new_style));
}

void add_sizing_border(HWND dialog) noexcept {
  if (style_of(dialog, GWL_STYLE) & (WS_CHILD | WS_THICKFRAME)) return;
  const DWORD ex_style = style_of(dialog, GWL_EXSTYLE);
  modify_style(dialog, GWL_STYLE, DS_MODALFRAME, WS_THICKFRAME);
  const CSize size = window_size_for(dialog, client_rect(dialog), ex_style);
  SetWindowPos(dialog, nullptr, 0, 0, size.cx, size.cy, border_flags);
}

void NcCalcSizeHandler::adjust(HWND dialog, bool after_default, NCCALCSIZE_PARAMS* params, LRESULT* result) noexcept {
  if (dropping_region_ || !changes_size(params)) return;
  if (!after_default) {
    old_client_ = params->rgrc[2];
    return;
  }
  if (*result != 0) return;
  keep_valid_part(*params, old_client_);
  *result = WVR_VALIDRECTS;
  if (!drops_window_region(style_of(dialog, GWL_STYLE), system_version())) return;
  // Setting the region calculates the frame again, from inside this calculation.
  dropping_region_ = true;
  SetWindowRgn(dialog, nullptr, FALSE);
  dropping_region_ = false;
}

}  // namespace resizable
