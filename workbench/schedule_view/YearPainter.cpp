#include "YearPainter.h"

#include <algorithm>

#include "DeviceContext.h"
#include "Owned.h"

namespace workbench {

namespace {

using base::ScopedSelectObject;
using schedule::Day;
using schedule::Month;

constexpr COLORREF expiration_color = RGB(176, 0, 0);
constexpr COLORREF roll_color = RGB(0, 70, 190);
constexpr COLORREF roll_background = RGB(214, 228, 252);
constexpr COLORREF holiday_background = RGB(232, 232, 232);
constexpr COLORREF closed_text = RGB(128, 128, 128);
constexpr COLORREF old_color = RGB(110, 110, 110);

using Gdi = base::OwnedBy<HGDIOBJ, &DeleteObject>;

base::Font year_font(int height, int weight) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = -height;
  font.lfWidth = 0;
  font.lfWeight = weight;
  return base::Font(CreateFontIndirectW(&font));
}

void fill(HDC dc, const RECT& area, COLORREF color) {
  const Gdi brush(CreateSolidBrush(color));
  FillRect(dc, &area, static_cast<HBRUSH>(brush.get()));
}

void write(HDC dc, const std::wstring& text, RECT area, COLORREF color, UINT format = DT_CENTER) {
  SetTextColor(dc, color);
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area, format | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

/// The pen for the outline of a mark: whole, dashed for an estimate, dotted for a day before a change.
Gdi mark_pen(COLORREF color, int width, DWORD style) {
  const LOGBRUSH brush{BS_SOLID, color, 0};
  return Gdi(ExtCreatePen(PS_GEOMETRIC | PS_ENDCAP_FLAT | PS_JOIN_MITER | style, static_cast<DWORD>(width), &brush, 0,
                          nullptr));
}

class YearPainter {
 public:
  YearPainter(HDC dc, const YearLayout& layout, const YearPicture& picture)
      : dc_(dc),
        layout_(layout),
        picture_(picture),
        line_(std::max<int>(static_cast<int>(layout.cell.cy) / 10, 1)),
        font_(year_font(layout.font_height, FW_NORMAL)),
        bold_font_(year_font(layout.font_height, FW_BOLD)),
        text_color_(GetSysColor(COLOR_WINDOWTEXT)) {}

  void paint() {
    SetBkMode(dc_, TRANSPARENT);
    for (std::size_t month = 0; month < layout_.months.size(); ++month) paint_month(month);
    paint_legend();
  }

 private:
  void paint_month(std::size_t index) {
    const Month month = picture_.first + std::chrono::months{static_cast<int>(index)};
    const std::string title = schedule::to_text(month);
    {
      const ScopedSelectObject bold(dc_, bold_font_.get());
      write(dc_, std::wstring(title.begin(), title.end()), title_of(layout_, index), text_color_);
    }
    const ScopedSelectObject normal(dc_, font_.get());
    for (int weekday = 0; weekday < 7; ++weekday)
      write(dc_, picture_.texts.weekdays.at(static_cast<std::size_t>(weekday)), weekday_cell(layout_, index, weekday),
            closed_text);
    const Day last{month / std::chrono::last};
    for (Day day{month / 1}; day <= last; day += std::chrono::days{1}) {
      const auto marked = picture_.marks.find(day);
      const unsigned number = static_cast<unsigned>(std::chrono::year_month_day{day}.day());
      paint_day(*day_cell(layout_, picture_.first, day), std::to_wstring(number),
                marked == picture_.marks.end() ? Marks{} : marked->second);
    }
  }

  void paint_day(const RECT& cell, const std::wstring& number, Marks marks) {
    if (marks & mark_closed) fill(dc_, inner(cell), holiday_background);
    if (marks & mark_roll) paint_roll(cell, marks);
    if (marks & (mark_old_roll | mark_old_expiration)) paint_old(cell, marks);
    const bool closed = (marks & (mark_weekend | mark_closed | mark_unknown)) != 0;
    const bool event = (marks & (mark_roll | mark_expiration)) != 0;
    const ScopedSelectObject font(dc_, event ? bold_font_.get() : font_.get());
    write(dc_, number, cell, closed && !event ? closed_text : text_color_);
    if (marks & mark_closed) strike_out(cell);
    if (marks & mark_expiration) paint_expiration(cell, marks);
  }

  /// A cell without the gap to its neighbours.
  RECT inner(RECT cell) const {
    InflateRect(&cell, -line_, 0);
    return cell;
  }

  /// A blue box with a filled triangle in its lower left corner; dashed and with an open triangle for an estimate.
  void paint_roll(const RECT& cell, Marks marks) {
    const bool estimate = (marks & mark_estimate) != 0;
    const RECT box = inner(cell);
    if (!estimate) fill(dc_, box, roll_background);
    outline(box, roll_color, line_, estimate ? PS_DASH : PS_SOLID, false);
    const LONG side = std::max<LONG>(layout_.cell.cy * 2 / 5, 5);
    const POINT corners[]{
        {box.left, box.bottom - 1 - side}, {box.left, box.bottom - 1}, {box.left + side, box.bottom - 1}};
    const Gdi brush(CreateSolidBrush(estimate ? GetSysColor(COLOR_WINDOW) : roll_color));
    const Gdi pen(CreatePen(PS_SOLID, 1, roll_color));
    const ScopedSelectObject with_pen(dc_, pen.get());
    const ScopedSelectObject with_brush(dc_, brush.get());
    Polygon(dc_, corners, static_cast<int>(std::size(corners)));
  }

  void paint_expiration(const RECT& cell, Marks marks) {
    outline(inner(cell), expiration_color, line_ + 1, (marks & mark_estimate) ? PS_DASH : PS_SOLID, true);
  }

  void paint_old(const RECT& cell, Marks marks) {
    if (marks & mark_old_roll) outline(inner(cell), old_color, line_, PS_DOT, false);
    if (marks & mark_old_expiration) outline(inner(cell), old_color, line_, PS_DOT, true);
  }

  /// The outline of a box, square or with round ends, inside the box: a thick line has its middle on the outline.
  void outline(RECT box, COLORREF color, int width, DWORD style, bool round) {
    const Gdi pen = mark_pen(color, width, style);
    const ScopedSelectObject with_pen(dc_, pen.get());
    const ScopedSelectObject hollow(dc_, GetStockObject(NULL_BRUSH));
    box = {box.left + width / 2, box.top + width / 2, box.right - (width - 1) / 2, box.bottom - (width - 1) / 2};
    if (round) {
      const int diameter = static_cast<int>(box.bottom - box.top);
      RoundRect(dc_, box.left, box.top, box.right, box.bottom, diameter, diameter);
    } else {
      Rectangle(dc_, box.left, box.top, box.right, box.bottom);
    }
  }

  void strike_out(const RECT& cell) {
    const Gdi pen(CreatePen(PS_SOLID, line_, closed_text));
    const ScopedSelectObject with_pen(dc_, pen.get());
    const LONG middle = (cell.top + cell.bottom) / 2;
    MoveToEx(dc_, cell.left + layout_.cell.cx / 5, middle, nullptr);
    LineTo(dc_, cell.right - layout_.cell.cx / 5, middle);
  }

  /// A sample day for each mark with its meaning beside it.
  void paint_legend() {
    const ScopedSelectObject font(dc_, font_.get());
    LONG left = layout_.legend.left;
    const auto add = [&](Marks marks, const std::wstring& meaning) {
      if (meaning.empty()) return;
      const LONG top = layout_.legend.top + (layout_.legend.bottom - layout_.legend.top - layout_.cell.cy) / 2;
      paint_day({left, top, left + layout_.cell.cx, top + layout_.cell.cy}, L"1", marks);
      left += layout_.cell.cx + 3 * line_;
      SIZE size{};
      GetTextExtentPoint32W(dc_, meaning.c_str(), static_cast<int>(meaning.size()), &size);
      write(dc_, meaning, {left, layout_.legend.top, left + size.cx, layout_.legend.bottom}, text_color_, DT_LEFT);
      left += size.cx + layout_.cell.cx;
    };
    add(mark_roll, picture_.texts.roll);
    add(mark_expiration, picture_.texts.expiration);
    add(mark_closed, picture_.texts.closed);
    add(mark_roll | mark_expiration | mark_estimate, picture_.texts.estimate);
    add(mark_old_roll, picture_.texts.before);
  }

  HDC dc_;
  const YearLayout& layout_;
  const YearPicture& picture_;
  int line_;
  base::Font font_;
  base::Font bold_font_;
  COLORREF text_color_;
};

}  // namespace

void paint_year(HDC dc, const YearLayout& layout, const YearPicture& picture, SIZE area) {
  fill(dc, {0, 0, area.cx, area.cy}, GetSysColor(COLOR_WINDOW));
  YearPainter(dc, layout, picture).paint();
}

}  // namespace workbench
