#include "EraseClipping.h"

namespace resizable {

namespace {

/// The area that a child covers, in client coordinates of its dialog.
platform::Region child_region(HWND dialog, HWND child) noexcept {
  const RECT rect = rect_in(dialog, child);
  platform::Region region(CreateRectRgn(0, 0, 0, 0));
  const int kind = GetWindowRgn(child, region.get());
  const bool has_region = kind == SIMPLEREGION || kind == COMPLEXREGION;
  if (!has_region || OffsetRgn(region.get(), rect.left, rect.top) == ERROR) region.reset(CreateRectRgnIndirect(&rect));
  return region;
}

}  // namespace

platform::Region client_region(HWND dialog) noexcept {
  const RECT rect = client_rect(dialog);
  return platform::Region(CreateRectRgnIndirect(&rect));
}

void combine_with_child(const platform::Region& erased, HWND dialog, const LayoutInfo& info) noexcept {
  if (!IsWindowVisible(info.hWnd)) return;
  const platform::Region child = child_region(dialog, info.hWnd);
  CombineRgn(erased.get(), erased.get(), child.get(), likes_clipping(info) ? RGN_DIFF : RGN_OR);
}

}  // namespace resizable
