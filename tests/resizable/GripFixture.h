#pragma once

#include <gtest/gtest.h>

#include "ImportProbe.h"
#include "ResizableGrip.h"
#include "TestWindows.h"

ZD_IMPORT_PROBE(GetSystemMetrics, MetricsProbe);

namespace resizable_test {

/// The grip alone on a window that is shown.
class SizeGrip : public testing::Test {
 protected:
  SizeGrip() { ShowWindow(parent.get(), SW_SHOWNOACTIVATE); }

  void create() { ASSERT_TRUE(grip.Create(parent.get())); }

  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(grip.m_hWnd, message, wParam, lParam);
  }

  /// What of the grip's rectangle belongs to its window.
  base::Region region() {
    base::Region copy(CreateRectRgn(0, 0, 0, 0));
    region_kind = GetWindowRgn(grip.m_hWnd, copy.get());
    return copy;
  }

  bool is_triangular() { return is_cut_to_triangle(grip.m_hWnd); }

  OwnedWindow parent{make_popup()};
  CSizeGrip grip;
  int region_kind = ERROR;
};

/// The system's scroll bars change their size in the middle of a test.
class GripSize : public SizeGrip {
 protected:
  void change_metrics(int cx, int cy) {
    metrics.replace([this, cx, cy](int index) {
      if (index == SM_CXVSCROLL) return cx;
      if (index == SM_CYHSCROLL) return cy;
      return metrics.original(index);
    });
  }

  void place_in_corner() {
    const POINT corner = resizable::grip_position({0, 0, 300, 200}, grip.Size());
    SetWindowPos(grip.m_hWnd, nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_SHOWWINDOW);
  }

  MetricsProbe metrics;
};

}  // namespace resizable_test
