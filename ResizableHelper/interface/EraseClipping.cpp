#include "EraseClipping.h"

namespace resizable {

namespace {

/// The area that a child covers, in client coordinates of its dialog.
base::Region child_region(HWND dialog, HWND child) noexcept {
  const RECT rect = rect_in(dialog, child);
  base::Region region(CreateRectRgnIndirect(&rect));
  const int kind = GetWindowRgn(child, region.get());
  const bool has_region = kind == SIMPLEREGION || kind == COMPLEXREGION;
  if (has_region && OffsetRgn(region.get(), rect.left, rect.top) != ERROR) return region;
  SetRectRgn(region.get(), rect.left, rect.top, rect.right, rect.bottom);
  return region;
}

}  // namespace

base::Region client_region(HWND dialog) noexcept {
  const RECT rect = client_rect(dialog);
  return base::Region(CreateRectRgnIndirect(&rect));
}

void combine_with_child(const base::Region& erased, HWND dialog, const LayoutInfo& info) noexcept {
  if (!IsWindowVisible(info.hWnd)) return;
  const base::Region child = child_region(dialog, info.hWnd);
  CombineRgn(erased.get(), erased.get(), child.get(), likes_clipping(info) ? RGN_DIFF : RGN_OR);
}

}  // namespace resizable
