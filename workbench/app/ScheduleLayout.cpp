#include "ScheduleLayout.h"

#include <algorithm>

#include "YearGeometry.h"

namespace workbench {

namespace {

/// The sizes of the pane's parts in pixels.
struct ScheduleMetrics {
  int gap;
  int heading_height;  ///< as that of the other panes
  int choice_height;
  int notice_height;
  int least_list_height;
  int calendar_width;
  int first_width;
  int months_width;
  int estimates_width;
  int dismiss_width;
};

ScheduleMetrics metrics_at(int dpi) {
  const auto scaled = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
  return {.gap = scaled(6),
          .heading_height = scaled(22),
          .choice_height = scaled(24),
          .notice_height = scaled(36),
          .least_list_height = scaled(110),
          .calendar_width = scaled(220),
          .first_width = scaled(96),
          .months_width = scaled(110),
          .estimates_width = scaled(160),
          .dismiss_width = scaled(150)};
}

int fixed_height(const ScheduleMetrics& metrics) {
  return metrics.heading_height + metrics.choice_height + metrics.notice_height + 3 * metrics.gap;
}

}  // namespace

SIZE least_schedule_size(int dpi) {
  const ScheduleMetrics metrics = metrics_at(dpi);
  const SIZE year = least_year_size(dpi);
  return {year.cx, fixed_height(metrics) + year.cy + metrics.least_list_height};
}

ScheduleLayout lay_out_schedule(SIZE client, int dpi) {
  const ScheduleMetrics metrics = metrics_at(dpi);
  const LONG width = std::max<LONG>(client.cx, 0);
  LONG top = 0;
  const auto slice = [&](LONG height, LONG gap) {
    const RECT part{0, top, width, top + height};
    top = part.bottom + gap;
    return part;
  };
  ScheduleLayout layout{};
  layout.heading = slice(metrics.heading_height, 0);

  const RECT choices = slice(metrics.choice_height, metrics.gap);
  LONG left = 0;
  const auto choice = [&](LONG wanted) {
    const RECT part{std::min(left, width), choices.top, std::min(left + wanted, width), choices.bottom};
    left += wanted + metrics.gap;
    return part;
  };
  layout.calendar = choice(metrics.calendar_width);
  layout.first = choice(metrics.first_width);
  layout.months = choice(metrics.months_width);
  layout.estimates = choice(metrics.estimates_width);

  layout.notice = slice(metrics.notice_height, metrics.gap);
  layout.dismiss = layout.notice;
  layout.dismiss.left = std::max<LONG>(width - metrics.dismiss_width, 0);
  layout.dismiss.bottom = layout.dismiss.top + metrics.choice_height;
  layout.notice.right = std::max<LONG>(layout.dismiss.left - metrics.gap, 0);

  const LONG rest = std::max<LONG>(client.cy - fixed_height(metrics), 0);
  const LONG least_year = least_year_size(dpi).cy;
  const LONG most_year = std::max<LONG>(rest - metrics.least_list_height, 0);
  layout.year = slice(std::min(std::max(rest * 3 / 5, least_year), most_year), metrics.gap);
  layout.list = slice(std::max<LONG>(client.cy - top, 0), 0);
  return layout;
}

}  // namespace workbench
