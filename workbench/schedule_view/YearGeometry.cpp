#include "YearGeometry.h"

#include <algorithm>
#include <array>

namespace workbench {

namespace {

using schedule::Day;
using schedule::Month;
using std::chrono::days;

constexpr int months_of_a_year = 12;
constexpr int weekdays = 7;
constexpr int lines_of_a_month = 1 + 6;  // the weekdays and six weeks

/// The sizes that do not grow with the area.
struct YearMetrics {
  SIZE least_cell;
  SIZE greatest_cell;
  int gap;
  int legend_height;
};

YearMetrics metrics_at(int dpi) {
  const auto scaled = [dpi](int pixels) { return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI); };
  return {.least_cell = {scaled(21), scaled(16)},
          .greatest_cell = {scaled(34), scaled(26)},
          .gap = scaled(10),
          .legend_height = scaled(24)};
}

int title_height_of(int cell_height) { return cell_height + cell_height / 4; }

SIZE month_size(SIZE cell) { return {weekdays * cell.cx, title_height_of(cell.cy) + lines_of_a_month * cell.cy}; }

SIZE year_size(int columns, int rows, SIZE cell, const YearMetrics& metrics) {
  const SIZE month = month_size(cell);
  return {columns * month.cx + (columns - 1) * metrics.gap,
          rows * month.cy + rows * metrics.gap + metrics.legend_height};
}

/// The largest cell with which this many months fit, or a smaller one than the least if they do not.
SIZE fitting_cell(SIZE area, int columns, int rows, const YearMetrics& metrics) {
  const int width = (area.cx - (columns - 1) * metrics.gap) / (columns * weekdays);
  int height = (area.cy - rows * metrics.gap - metrics.legend_height) / (rows * lines_of_a_month);
  while (height > 0 && year_size(columns, rows, {1, height}, metrics).cy > area.cy) --height;
  return {std::min<LONG>(width, metrics.greatest_cell.cx), std::min<LONG>(height, metrics.greatest_cell.cy)};
}

bool is_readable(SIZE cell, const YearMetrics& metrics) {
  return cell.cx >= metrics.least_cell.cx && cell.cy >= metrics.least_cell.cy;
}

struct Grid {
  int columns = 1;
  int rows = 1;
  SIZE cell{};
};

/// Twelve months in the shape with the largest cells; if none is readable, as many rows and columns of them as fit.
Grid choose_grid(SIZE area, const YearMetrics& metrics) {
  Grid best;
  for (const int columns : {4, 3, 6, 2, 12, 1}) {
    const Grid grid{columns, months_of_a_year / columns,
                    fitting_cell(area, columns, months_of_a_year / columns, metrics)};
    if (is_readable(grid.cell, metrics) && grid.cell.cx * grid.cell.cy > best.cell.cx * best.cell.cy) best = grid;
  }
  if (best.cell.cx > 0) return best;
  const SIZE month = month_size(metrics.least_cell);
  const auto fitting = [&](LONG length, LONG part) {
    return std::clamp(static_cast<int>((length + metrics.gap) / (part + metrics.gap)), 1, months_of_a_year);
  };
  return {fitting(area.cx, month.cx), fitting(area.cy - metrics.legend_height, month.cy), metrics.least_cell};
}

/// How many days from Monday this day is away.
int days_from_monday(Day day) { return static_cast<int>((std::chrono::weekday{day}.c_encoding() + 6) % 7); }

RECT part_of(const YearLayout& layout, std::size_t month, int column, int line) {
  const RECT& block = layout.months.at(month);
  const LONG left = block.left + column * layout.cell.cx;
  const LONG top = block.top + layout.title_height + line * layout.cell.cy;
  return {left, top, left + layout.cell.cx, top + layout.cell.cy};
}

}  // namespace

SIZE least_year_size(int dpi) {
  const YearMetrics metrics = metrics_at(dpi);
  return year_size(4, 3, metrics.least_cell, metrics);
}

YearLayout lay_out_year(SIZE area, int dpi) {
  const YearMetrics metrics = metrics_at(dpi);
  const Grid grid = choose_grid(area, metrics);
  const SIZE month = month_size(grid.cell);
  const SIZE used = year_size(grid.columns, grid.rows, grid.cell, metrics);
  const LONG left = std::max<LONG>((area.cx - used.cx) / 2, 0);

  YearLayout layout;
  layout.cell = grid.cell;
  layout.title_height = title_height_of(grid.cell.cy);
  layout.font_height = grid.cell.cy * 3 / 4;
  for (int at = 0; at < std::min(grid.columns * grid.rows, months_of_a_year); ++at) {
    const LONG x = left + at % grid.columns * (month.cx + metrics.gap);
    const LONG y = at / grid.columns * (month.cy + metrics.gap);
    layout.months.push_back({x, y, x + month.cx, y + month.cy});
  }
  const LONG below = layout.months.back().bottom + metrics.gap;
  layout.legend = {left, below, std::max<LONG>(left + used.cx, area.cx - left), below + metrics.legend_height};
  return layout;
}

RECT title_of(const YearLayout& layout, std::size_t month) {
  const RECT& block = layout.months.at(month);
  return {block.left, block.top, block.right, block.top + layout.title_height};
}

RECT weekday_cell(const YearLayout& layout, std::size_t month, int weekday) {
  return part_of(layout, month, weekday, 0);
}

std::optional<RECT> day_cell(const YearLayout& layout, Month first, Day day) {
  const std::chrono::year_month_day date{day};
  const auto month = (Month{date.year(), date.month()} - first).count();
  if (month < 0 || static_cast<std::size_t>(month) >= layout.months.size()) return std::nullopt;
  const Day first_day{Month{date.year(), date.month()} / 1};
  const int position = days_from_monday(first_day) + static_cast<int>((day - first_day).count());
  return part_of(layout, static_cast<std::size_t>(month), position % weekdays, 1 + position / weekdays);
}

std::optional<Day> day_at(const YearLayout& layout, Month first, POINT point) {
  for (std::size_t month = 0; month < layout.months.size(); ++month) {
    if (!PtInRect(&layout.months[month], point)) continue;
    const Day first_day{(first + std::chrono::months{static_cast<int>(month)}) / 1};
    const Day last_day{(first + std::chrono::months{static_cast<int>(month)}) / std::chrono::last};
    const LONG down = point.y - layout.months[month].top - layout.title_height - layout.cell.cy;
    if (down < 0) return std::nullopt;
    const LONG across = (point.x - layout.months[month].left) / layout.cell.cx;
    const Day day = first_day + days{down / layout.cell.cy * weekdays + across - days_from_monday(first_day)};
    if (day >= first_day && day <= last_day) return day;
  }
  return std::nullopt;
}

}  // namespace workbench
