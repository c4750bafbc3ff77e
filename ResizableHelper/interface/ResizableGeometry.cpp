#include "ResizableGeometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace resizable {

namespace {

constexpr UINT base_move_flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
constexpr UINT no_change = SWP_NOMOVE | SWP_NOSIZE;
constexpr unsigned first_themed_system = 0x501;

// 32-bit arithmetic that wraps around: the unsigned detour keeps it defined.
LONG sum(LONG a, LONG b) noexcept { return static_cast<LONG>(static_cast<ULONG>(a) + static_cast<ULONG>(b)); }
LONG difference(LONG a, LONG b) noexcept { return static_cast<LONG>(static_cast<ULONG>(a) - static_cast<ULONG>(b)); }
LONG product(LONG a, LONG b) noexcept { return static_cast<LONG>(static_cast<ULONG>(a) * static_cast<ULONG>(b)); }

LONG saturated(std::int64_t value) noexcept {
  using Limits = std::numeric_limits<LONG>;
  return static_cast<LONG>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

POINT corner_position(const RECT& parent, const Corner& corner) noexcept {
  const CSize extent = size_of(parent);
  return {sum(sum(anchor_position(extent.cx, corner.anchor.cx), corner.margin.cx), parent.left),
          sum(sum(anchor_position(extent.cy, corner.anchor.cy), corner.margin.cy), parent.top)};
}

struct Span {
  std::int64_t start;
  std::int64_t length;
};

/// A span pulled into the work area [start, end) and moved to another one. The start wins where it does not fit.
Span fitted_span(Span span, LONG start, LONG end, LONG cursor_start) noexcept {
  const std::int64_t pulled = std::max<std::int64_t>(start, std::min(span.start, end - span.length));
  return {pulled + cursor_start - start, span.length};
}

void hold_span(LONG& start, LONG& end, LONG smallest) noexcept {
  if (std::int64_t{end} - start >= smallest) return;
  start = std::min(start, difference(std::numeric_limits<LONG>::max(), smallest));
  end = sum(start, smallest);
}

}  // namespace

CSize size_of(const RECT& rect) noexcept {
  return {difference(rect.right, rect.left), difference(rect.bottom, rect.top)};
}

LONG anchor_position(LONG extent, LONG percent) noexcept { return product(extent, percent) / 100; }

Corner measured_corner(const RECT& parent, CSize anchor, POINT point) noexcept {
  const CSize extent = size_of(parent);
  return {anchor,
          {difference(difference(point.x, parent.left), anchor_position(extent.cx, anchor.cx)),
           difference(difference(point.y, parent.top), anchor_position(extent.cy, anchor.cy))}};
}

RECT anchored_rect(const RECT& parent, const Corner& top_left, const Corner& bottom_right) noexcept {
  const POINT start = corner_position(parent, top_left);
  const POINT end = corner_position(parent, bottom_right);
  return {start.x, start.y, end.x, end.y};
}

UINT move_flags(const RECT& from, const RECT& to, bool refresh) noexcept {
  UINT flags = base_move_flags;
  if (refresh) flags |= SWP_NOCOPYBITS;
  if (to.left == from.left && to.top == from.top) flags |= SWP_NOMOVE;
  if (size_of(to) == size_of(from)) flags |= SWP_NOSIZE;
  return flags;
}

bool moves_nothing(UINT flags) noexcept { return (flags & no_change) == no_change; }

std::array<POINT, 3> grip_triangle(SIZE size) noexcept {
  return {POINT{0, size.cy}, POINT{size.cx, size.cy}, POINT{size.cx, 0}};
}

POINT grip_position(const RECT& client, SIZE grip) noexcept {
  return {difference(client.right, grip.cx), difference(client.bottom, grip.cy)};
}

RECT resized_grip(const RECT& grip, SIZE old_size, SIZE new_size) noexcept {
  return {sum(grip.left, difference(old_size.cx, new_size.cx)), sum(grip.top, difference(old_size.cy, new_size.cy)),
          grip.right, grip.bottom};
}

void apply_limits(const TrackingLimits& limits, MINMAXINFO& info) noexcept {
  if (limits.use_min_track) info.ptMinTrackSize = limits.min_track;
  if (limits.use_max_track) info.ptMaxTrackSize = limits.max_track;
  if (limits.use_max_rect) {
    info.ptMaxPosition = limits.max_position;
    info.ptMaxSize = limits.max_size;
  }
}

bool is_opening_height(LONG height, LONG min_height, LONG caption) noexcept {
  return height < min_height && height >= std::int64_t{min_height} - caption;
}

void keep_valid_part(NCCALCSIZE_PARAMS& params, const RECT& old_client) noexcept {
  IntersectRect(&params.rgrc[1], &params.rgrc[0], &old_client);
  params.rgrc[2] = params.rgrc[1];
}

bool drops_window_region(DWORD style, unsigned system_version) noexcept {
  return system_version >= first_themed_system && (style & (WS_CAPTION | WS_MAXIMIZE)) == WS_CAPTION;
}

UINT reopening_command(const WINDOWPLACEMENT& placement, bool minimised, bool rect_only) noexcept {
  if (rect_only) return SW_SHOWNORMAL;
  if (placement.flags & WPF_RESTORETOMAXIMIZED) return SW_SHOWMAXIMIZED;
  return minimised ? SW_SHOW : placement.showCmd;
}

void lower_bottom(RECT& rect, LONG caption) noexcept { rect.bottom = saturated(std::int64_t{rect.bottom} - caption); }

void raise_bottom(RECT& rect, LONG caption) noexcept { rect.bottom = saturated(std::int64_t{rect.bottom} + caption); }

RECT held_rect(const RECT& rect, CSize smallest, LONG caption) noexcept {
  RECT held = rect;
  hold_span(held.left, held.right, smallest.cx);
  const LONG height = saturated(std::int64_t{rect.bottom} - rect.top);
  if (!is_opening_height(height, smallest.cy, caption)) hold_span(held.top, held.bottom, smallest.cy);
  return held;
}

RECT fitted_rect(const RECT& rect, const RECT& work, const RECT& cursor_work) noexcept {
  const Span across =
      fitted_span({rect.left, std::int64_t{rect.right} - rect.left}, work.left, work.right, cursor_work.left);
  const Span down =
      fitted_span({rect.top, std::int64_t{rect.bottom} - rect.top}, work.top, work.bottom, cursor_work.top);
  return {saturated(across.start), saturated(down.start), saturated(across.start + across.length),
          saturated(down.start + down.length)};
}

}  // namespace resizable
