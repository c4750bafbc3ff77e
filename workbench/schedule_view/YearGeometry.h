#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "Dates.h"

namespace workbench {

/// Where the parts of a year at a glance lie, in pixels. Each month is a title, a line of weekdays and six weeks that
/// begin on Monday.
struct YearLayout {
  std::vector<RECT> months;  ///< up to twelve, row by row; fewer only where twelve readable ones do not fit
  SIZE cell{};               ///< of one day
  int title_height = 0;      ///< of the month's title
  int font_height = 0;       ///< of the digits
  RECT legend{};             ///< one line below the months
};

/// The smallest area in which twelve months fit in four columns.
SIZE least_year_size(int dpi);

/// Lays out an area of this size at this resolution (96 for 100 %): as large as fits, up to a largest cell, and never
/// below the smallest readable cell. At least one month is shown, however small the area.
YearLayout lay_out_year(SIZE area, int dpi);

/// The title of the month at this index.
RECT title_of(const YearLayout& layout, std::size_t month);

/// The heading of a weekday, 0 for Monday.
RECT weekday_cell(const YearLayout& layout, std::size_t month, int weekday);

/// The cell of a day of the year that begins with `first`; nothing if its month is not shown.
std::optional<RECT> day_cell(const YearLayout& layout, schedule::Month first, schedule::Day day);

/// The day at a point, if there is one.
std::optional<schedule::Day> day_at(const YearLayout& layout, schedule::Month first, POINT point);

}  // namespace workbench
