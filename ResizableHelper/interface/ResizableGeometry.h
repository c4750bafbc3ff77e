#pragma once

#include <windows.h>

#include <array>

/// A width and a height in pixels, or an anchor: a horizontal and a vertical percentage of the parent's client area.
struct CSize : SIZE {
  constexpr CSize(LONG width = 0, LONG height = 0) noexcept : SIZE() {
    cx = width;
    cy = height;
  }
  friend constexpr bool operator==(const CSize& left, const CSize& right) noexcept {
    return left.cx == right.cx && left.cy == right.cy;
  }
};

inline constexpr CSize TOP_LEFT(0, 0);
inline constexpr CSize TOP_CENTER(50, 0);
inline constexpr CSize TOP_RIGHT(100, 0);
inline constexpr CSize MIDDLE_LEFT(0, 50);
inline constexpr CSize MIDDLE_CENTER(50, 50);
inline constexpr CSize MIDDLE_RIGHT(100, 50);
inline constexpr CSize BOTTOM_LEFT(0, 100);
inline constexpr CSize BOTTOM_CENTER(50, 100);
inline constexpr CSize BOTTOM_RIGHT(100, 100);
inline constexpr CSize NOANCHOR(-1, -1);

/// The arithmetic of resizable dialogs: values in, values out, no window touched. Pixels throughout. Every function is
/// defined for every input: anchors wrap around at 32 bits, placements stop at the ends of the range.
namespace resizable {

/// One corner of a child: its anchor and its distance from the anchor.
struct Corner {
  CSize anchor;
  CSize margin;
};

/// Width and height of a rectangle.
CSize size_of(const RECT& rect) noexcept;

/// How far from the start of `extent` an anchor of `percent` lies, truncated toward zero.
LONG anchor_position(LONG extent, LONG percent) noexcept;

/// A corner that now lies at `point`, in client coordinates of a parent with the client rectangle `parent`.
Corner measured_corner(const RECT& parent, CSize anchor, POINT point) noexcept;

/// Where the two corners put a child in a parent with the client rectangle `parent`.
RECT anchored_rect(const RECT& parent, const Corner& top_left, const Corner& bottom_right) noexcept;

/// The flags of SetWindowPos that bring a child from one rectangle to another; with `refresh` nothing of its old
/// picture is kept.
UINT move_flags(const RECT& from, const RECT& to, bool refresh) noexcept;

/// Whether these flags leave the child where and as large as it is.
bool moves_nothing(UINT flags) noexcept;

/// The lower right half of a grip of that size: the corners (0, h), (w, h), (w, 0).
std::array<POINT, 3> grip_triangle(SIZE size) noexcept;

/// Where a grip stands whose lower right corner fills that of the client rectangle.
POINT grip_position(const RECT& client, SIZE grip) noexcept;

/// The rectangle of a grip that changes its size and keeps its lower right corner.
RECT resized_grip(const RECT& grip, SIZE old_size, SIZE new_size) noexcept;

/// What a dialog writes at WM_GETMINMAXINFO. Window sizes in pixels; a limit counts while its flag is set.
struct TrackingLimits {
  BOOL use_max_track = FALSE;
  BOOL use_min_track = FALSE;
  BOOL use_max_rect = FALSE;
  POINT min_track = {};
  POINT max_track = {};
  POINT max_position = {};
  POINT max_size = {};
};

/// Writes the limits that count into `info` and leaves the rest as the system filled it.
void apply_limits(const TrackingLimits& limits, MINMAXINFO& info) noexcept;

/// Whether a window height lies at most one caption height below the smallest: a dialog opens so the first time and may
/// be restored so, although the user cannot drag it there.
bool is_opening_height(LONG height, LONG min_height, LONG caption) noexcept;

/// Reports to the window manager which part of the client area stays valid: where the new window and the old client
/// area overlap, old and new picture are the same.
void keep_valid_part(NCCALCSIZE_PARAMS& params, const RECT& old_client) noexcept;

/// Whether a window of that style drops its region when its frame is calculated: one with a caption that is not
/// maximised, since the themed frames of system version 5.1. `system_version` is major * 256 + minor.
bool drops_window_region(DWORD style, unsigned system_version) noexcept;

/// How a dialog that is closed now is shown when it opens again; it never opens minimised.
UINT reopening_command(const WINDOWPLACEMENT& placement, bool minimised, bool rect_only) noexcept;

/// A stored placement's bottom lies one caption height above the visible one.
void lower_bottom(RECT& rect, LONG caption) noexcept;
void raise_bottom(RECT& rect, LONG caption) noexcept;

/// Grows a stored rectangle to the minimum size; keeps opening heights; inverted rectangles become minimum-sized.
RECT held_rect(const RECT& rect, CSize smallest, LONG caption) noexcept;

/// Pulls a rectangle into the work area of its monitor, the left and top edges first, and moves it to the same offset
/// in the work area of the monitor under the cursor. Keeps its size.
RECT fitted_rect(const RECT& rect, const RECT& work, const RECT& cursor_work) noexcept;

}  // namespace resizable
