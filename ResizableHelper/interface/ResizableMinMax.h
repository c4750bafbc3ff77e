#pragma once

#include <windows.h>

#include "Report.h"
#include "ResizableGeometry.h"

/// Mix-in of a dialog class `T`: the limits that the dialog writes at WM_GETMINMAXINFO. Sizes are those of the whole
/// window, in pixels. A limit that was never set leaves the system's own.
template <class T>
class CResizableMinMax {
 public:
  CResizableMinMax() noexcept = default;
  CResizableMinMax(const CResizableMinMax&) = delete;
  CResizableMinMax& operator=(const CResizableMinMax&) = delete;
  virtual ~CResizableMinMax() = default;

  /// For a derived class that knows how much larger than `sizeNormal` a window must be to show `sizeWanted`, and
  /// returns TRUE with that in `sizeExtra`. Not overridden it fails with an assertion and returns FALSE.
  virtual BOOL CalcSizeExtra(HWND /*hWnd*/, CSize /*sizeNormal*/, CSize /*sizeWanted*/, CSize& /*sizeExtra*/) {
    SnagtrapUtil::expect(false, ZD_LOCATION_AT(130));
    return FALSE;
  }

  void SetMinTrackingSize(CSize size) noexcept {
    limits_.min_track = {size.cx, size.cy};
    limits_.use_min_track = TRUE;
  }

  void SetMaxTrackingSize(CSize size) noexcept {
    limits_.max_track = {size.cx, size.cy};
    limits_.use_max_track = TRUE;
  }

  /// Where and how large the dialog is when maximised.
  void SetMaximizedRect(const RECT& rect) noexcept {
    const CSize size = resizable::size_of(rect);
    limits_.max_position = {rect.left, rect.top};
    limits_.max_size = {size.cx, size.cy};
    limits_.use_max_rect = TRUE;
  }

  /// Handles WM_GETMINMAXINFO.
  void FillMinMaxInfo(MINMAXINFO& info) const noexcept { resizable::apply_limits(limits_, info); }

  CSize MinTrackingSize() const noexcept { return {limits_.min_track.x, limits_.min_track.y}; }

 private:
  resizable::TrackingLimits limits_;
};
