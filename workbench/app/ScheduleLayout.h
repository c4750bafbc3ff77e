#pragma once

#include <windows.h>

namespace workbench {

/// Where the parts of the schedule pane lie in its client area. No rectangle is inside out, however small the area.
struct ScheduleLayout {
  RECT heading;
  RECT calendar;  ///< the choices stand side by side
  RECT first;
  RECT months;
  RECT estimates;
  RECT notice;  ///< up to two lines
  RECT dismiss;
  RECT year;
  RECT list;
};

/// Lays out the pane at this resolution. The year gets the greater part of the height below the choices, but the list
/// keeps a few rows.
ScheduleLayout lay_out_schedule(SIZE client, int dpi);

/// The smallest client area in which the whole year is readable.
SIZE least_schedule_size(int dpi);

}  // namespace workbench
