#include "FrameGeometry.h"

#include <algorithm>

namespace workbench {

namespace {

/// The height that the two lists share.
int lists_height(SIZE client, const FrameMetrics& metrics) {
  const int fixed = 2 * metrics.margin + 2 * metrics.heading_height + metrics.splitter_height + metrics.status_height;
  return std::max(static_cast<int>(client.cy) - fixed, 0);
}

int upper_height(int lists, int wanted, const FrameMetrics& metrics) {
  const int greatest = std::max(lists - metrics.least_list_height, 0);
  const int least = std::min(metrics.least_list_height, greatest);
  return std::clamp(wanted, least, greatest);
}

}  // namespace

FrameMetrics frame_metrics(int dpi, int status_height) {
  const auto scaled = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
  return {.margin = scaled(8),
          .heading_height = scaled(22),
          .splitter_height = scaled(8),
          .least_list_height = scaled(90),
          .least_width = scaled(480),
          .status_height = status_height};
}

SIZE least_client_size(const FrameMetrics& metrics) {
  return {metrics.least_width, 2 * (metrics.margin + metrics.heading_height + metrics.least_list_height) +
                                   metrics.splitter_height + metrics.status_height};
}

FrameLayout lay_out_frame(SIZE client, double split, const FrameMetrics& metrics) {
  const LONG left = metrics.margin;
  const LONG right = std::max(client.cx - metrics.margin, left);
  const int lists = lists_height(client, metrics);
  const int upper = upper_height(lists, static_cast<int>(lists * split), metrics);

  LONG top = metrics.margin;
  const auto slice = [&](int height) {
    const RECT part{left, top, right, top + height};
    top = part.bottom;
    return part;
  };
  FrameLayout layout{};
  layout.rules_heading = slice(metrics.heading_height);
  layout.rules = slice(upper);
  layout.splitter = slice(metrics.splitter_height);
  layout.settings_heading = slice(metrics.heading_height);
  layout.settings = slice(lists - upper);
  return layout;
}

RECT centered(const RECT& area, SIZE size) {
  const LONG width = std::min(size.cx, area.right - area.left);
  const LONG height = std::min(size.cy, area.bottom - area.top);
  const LONG left = area.left + (area.right - area.left - width) / 2;
  const LONG top = area.top + (area.bottom - area.top - height) / 2;
  return {left, top, left + width, top + height};
}

double split_for(int splitter_top, SIZE client, const FrameMetrics& metrics) {
  const int lists = lists_height(client, metrics);
  if (lists == 0) return 0;
  const int upper = upper_height(lists, splitter_top - metrics.margin - metrics.heading_height, metrics);
  return static_cast<double>(upper) / lists;
}

StatusEdges status_edges(int width, int dpi) {
  const int count_width = MulDiv(110, dpi, USER_DEFAULT_SCREEN_DPI);
  const int store_width = std::max(width * 2 / 5, 0);
  const int store_left = std::max(width - store_width, 0);
  return {{std::max(store_left - count_width, 0), store_left, -1}};
}

}  // namespace workbench
