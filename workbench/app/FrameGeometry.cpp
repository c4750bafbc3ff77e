#include "FrameGeometry.h"

#include <algorithm>

#include "ScheduleLayout.h"

namespace workbench {

namespace {

/// The height that the two lists share.
int lists_height(SIZE client, const FrameMetrics& metrics) {
  const int fixed = 2 * metrics.margin + 2 * metrics.heading_height + metrics.splitter_height + metrics.status_height;
  return std::max(static_cast<int>(client.cy) - fixed, 0);
}

/// The first part of a length that is shared by two parts with least lengths.
int first_part(int length, int wanted, int least, int least_other) {
  const int greatest = std::max(length - least_other, 0);
  return std::clamp(wanted, std::min(least, greatest), greatest);
}

int upper_height(int lists, int wanted, const FrameMetrics& metrics) {
  return first_part(lists, wanted, metrics.least_list_height, metrics.least_list_height);
}

/// The width that the two columns share.
int columns_width(SIZE client, const FrameMetrics& metrics) {
  return std::max(static_cast<int>(client.cx) - 2 * metrics.margin - metrics.splitter_height, 0);
}

int lists_width(int columns, int wanted, const FrameMetrics& metrics) {
  return first_part(columns, wanted, metrics.least_lists_width, metrics.least_schedule_width);
}

}  // namespace

FrameMetrics frame_metrics(int dpi, int status_height) {
  const auto scaled = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
  return {.margin = scaled(8),
          .heading_height = scaled(22),
          .splitter_height = scaled(8),
          .least_list_height = scaled(90),
          .least_lists_width = scaled(240),
          .least_schedule_width = least_schedule_size(dpi).cx,
          .status_height = status_height};
}

SIZE least_client_size(const FrameMetrics& metrics) {
  return {2 * metrics.margin + metrics.least_lists_width + metrics.splitter_height + metrics.least_schedule_width,
          2 * (metrics.margin + metrics.heading_height + metrics.least_list_height) + metrics.splitter_height +
              metrics.status_height};
}

FrameLayout lay_out_frame(SIZE client, const FrameSplits& splits, const FrameMetrics& metrics) {
  const int columns = columns_width(client, metrics);
  const LONG left = metrics.margin;
  const LONG right = left + lists_width(columns, static_cast<int>(columns * splits.columns), metrics);
  const int lists = lists_height(client, metrics);
  const int upper = upper_height(lists, static_cast<int>(lists * splits.rows), metrics);

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
  layout.column_splitter = {right, metrics.margin, right + metrics.splitter_height, layout.settings.bottom};
  layout.schedule = layout.column_splitter;
  layout.schedule.left = layout.column_splitter.right;
  layout.schedule.right = std::max<LONG>(left + columns + metrics.splitter_height, layout.schedule.left);
  return layout;
}

RECT centered(const RECT& area, SIZE size) {
  const LONG width = std::min(size.cx, area.right - area.left);
  const LONG height = std::min(size.cy, area.bottom - area.top);
  const LONG left = area.left + (area.right - area.left - width) / 2;
  const LONG top = area.top + (area.bottom - area.top - height) / 2;
  return {left, top, left + width, top + height};
}

double column_split_for(int splitter_left, SIZE client, const FrameMetrics& metrics) {
  const int columns = columns_width(client, metrics);
  if (columns == 0) return 0;
  return static_cast<double>(lists_width(columns, splitter_left - metrics.margin, metrics)) / columns;
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
