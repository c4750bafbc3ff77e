#include "WindowMoves.h"

#include "ResizableGeometry.h"

namespace resizable {

void WindowMoves::add(HWND window, const RECT& rect, UINT flags) {
  if (!moves_nothing(flags)) moves_.push_back({window, rect, flags});
}

void WindowMoves::apply() const noexcept {
  if (moves_.empty() || apply_as_batch()) return;
  for (const Move& move : moves_) {
    const CSize size = size_of(move.rect);
    SetWindowPos(move.window, nullptr, move.rect.left, move.rect.top, size.cx, size.cy, move.flags);
  }
}

bool WindowMoves::apply_as_batch() const noexcept {
  HDWP batch = BeginDeferWindowPos(static_cast<int>(expected_));
  for (const Move& move : moves_) {
    if (!batch) return false;
    const CSize size = size_of(move.rect);
    batch = DeferWindowPos(batch, move.window, nullptr, move.rect.left, move.rect.top, size.cx, size.cy, move.flags);
  }
  return batch && EndDeferWindowPos(batch);
}

}  // namespace resizable
