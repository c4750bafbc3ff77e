#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "ColumnWidths.h"
#include "FuzzInput.h"
#include "ResizableGeometry.h"

namespace {

using namespace resizable;
using native_test::expect;
using native_test::Input;

bool same(const RECT& left, const RECT& right) { return std::memcmp(&left, &right, sizeof left) == 0; }

void anchor(Input& input) {
  const auto parent = input.take<RECT>();
  const auto top_left = measured_corner(parent, input.take<CSize>(), input.take<POINT>());
  const auto bottom_right = measured_corner(parent, input.take<CSize>(), input.take<POINT>());
  const RECT child = anchored_rect(parent, top_left, bottom_right);
  // A child stays where it is as long as its parent does.
  expect(same(child, anchored_rect(parent, measured_corner(parent, top_left.anchor, {child.left, child.top}),
                                   measured_corner(parent, bottom_right.anchor, {child.right, child.bottom}))));
  expect(moves_nothing(move_flags(child, child, false)));
  const auto other = anchored_rect(input.take<RECT>(), top_left, bottom_right);
  expect(moves_nothing(move_flags(child, other, true)) == same(child, other));
}

void grip(Input& input) {
  const auto client = input.take<RECT>();
  const auto size = input.take<SIZE>();
  const POINT position = grip_position(client, size);
  const RECT moved = resized_grip({position.x, position.y, client.right, client.bottom}, size, input.take<SIZE>());
  expect(moved.right == client.right && moved.bottom == client.bottom);
  expect(grip_triangle(size)[1].x == size.cx);
}

void limits(Input& input) {
  const auto limits = input.take<TrackingLimits>();
  const auto before = input.take<MINMAXINFO>();
  MINMAXINFO info = before;
  apply_limits(limits, info);
  expect(info.ptMinTrackSize.x == (limits.use_min_track ? limits.min_track.x : before.ptMinTrackSize.x));
  expect(info.ptMaxTrackSize.y == (limits.use_max_track ? limits.max_track.y : before.ptMaxTrackSize.y));
  expect(info.ptMaxSize.x == (limits.use_max_rect ? limits.max_size.x : before.ptMaxSize.x));
  auto params = input.take<NCCALCSIZE_PARAMS>();
  keep_valid_part(params, input.take<RECT>());
  expect(same(params.rgrc[1], params.rgrc[2]));
  drops_window_region(input.take<DWORD>(), input.take<unsigned>());
}

/// A monitor's work area: any position, any sensible size.
RECT work_area(Input& input) {
  const LONG left = input.take<std::int16_t>();
  const LONG top = input.take<std::int16_t>();
  return {left, top, left + 640 + input.take<std::uint16_t>() % 8000, top + 480 + input.take<std::uint16_t>() % 8000};
}

void placement(Input& input) {
  const auto stored = input.take<WINDOWPLACEMENT>();
  const bool minimised = input.take<bool>();
  const bool rect_only = input.take<bool>();
  expect(rect_only ? reopening_command(stored, minimised, true) == SW_SHOWNORMAL
                   : !minimised || reopening_command(stored, true, false) != 2);
  const LONG caption = input.take<std::uint8_t>();
  const CSize smallest(1 + input.take<std::uint8_t>(), 1 + input.take<std::uint8_t>());
  RECT rect = stored.rcNormalPosition;
  // Across the end of the range, where 32 bits take the height for a small one.
  if (input.take<bool>()) {
    rect.top = std::numeric_limits<LONG>::max() - input.take<std::uint8_t>();
    rect.bottom = static_cast<LONG>(static_cast<ULONG>(rect.top) + input.take<std::uint8_t>());
  }
  raise_bottom(rect, caption);
  const RECT held = held_rect(rect, smallest, caption);
  expect(std::int64_t{held.right} - held.left >= smallest.cx);
  expect(std::int64_t{held.bottom} - held.top >= std::int64_t{smallest.cy} - caption);
  const RECT work = work_area(input);
  const RECT fitted = fitted_rect(held, work, work);
  // The smallest window lies wholly in the work area; an opening height may be shorter.
  expect(fitted.left >= work.left && fitted.top >= work.top);
  expect(fitted.left + smallest.cx <= work.right && fitted.top + smallest.cy - caption <= work.bottom);
  expect(same(fitted, fitted_rect(fitted, work, work)));
  lower_bottom(rect, caption);
  fitted_rect(stored.rcNormalPosition, input.take<RECT>(), input.take<RECT>());
  is_opening_height(input.take<LONG>(), input.take<LONG>(), input.take<LONG>());
}

void columns(Input& input) {
  const double fractions[] = {input.take<std::uint8_t>() / 255.0, input.take<std::uint8_t>() / 255.0, 0};
  const int whole = input.take<std::uint16_t>();
  int shared = 0;
  zd_expiration_rule_plugin::share_width(whole, fractions, [&](std::size_t, int width) { shared += width; });
  expect(shared == whole);
}

}  // namespace

/// Any bytes as windows, their parents, monitors and limits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  anchor(input);
  grip(input);
  limits(input);
  placement(input);
  columns(input);
  return 0;
}
