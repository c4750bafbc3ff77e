#include <gtest/gtest.h>

#include <set>

#include "Owned.h"
#include "ScheduleSamples.h"
#include "YearPainter.h"

namespace workbench {
namespace {

/// A bitmap in memory with the picture of a year.
class PaintedYear {
 public:
  explicit PaintedYear(const YearPicture& picture, int dpi = 96)
      : area_(least_year_size(dpi)), layout_(lay_out_year(area_, dpi)), first_(picture.first) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = area_.cx;
    info.bmiHeader.biHeight = -area_.cy;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    HGDIOBJ previous = SelectObject(dc_.get(), bitmap_.get());
    paint_year(dc_.get(), layout_, picture, area_);
    GdiFlush();
    const auto* pixels = static_cast<const DWORD*>(bits);
    pixels_.assign(pixels, pixels + static_cast<std::size_t>(area_.cx) * static_cast<std::size_t>(area_.cy));
    SelectObject(dc_.get(), previous);
  }

  /// The pixels of a day, row by row.
  std::vector<DWORD> cell(Day day) const { return part(*day_cell(layout_, first_, day)); }
  std::vector<DWORD> legend() const { return part(layout_.legend); }

  std::vector<DWORD> part(const RECT& box) const {
    std::vector<DWORD> part;
    for (LONG y = box.top; y < box.bottom; ++y) {
      for (LONG x = box.left; x < box.right; ++x) part.push_back(pixel(x, y));
    }
    return part;
  }

  const YearLayout& layout() const { return layout_; }

 private:
  DWORD pixel(LONG x, LONG y) const {
    return pixels_.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(area_.cx) + static_cast<std::size_t>(x));
  }

  SIZE area_;
  YearLayout layout_;
  Month first_;
  base::MemoryDc dc_{CreateCompatibleDC(nullptr)};
  base::Bitmap bitmap_;
  std::vector<DWORD> pixels_;
};

YearPicture picture_with(Day marked, unsigned marks) {
  return {.first = contract(2026, 1),
          .marks = {{marked, static_cast<Marks>(marks)}},
          .texts = {.weekdays = {L"一", L"二", L"三", L"四", L"五", L"六", L"日"},
                    .expiration = L"到期",
                    .roll = L"换月",
                    .closed = L"休市",
                    .estimate = L"估计"}};
}

constexpr Day marked_day = day(2026, 7, 14);

std::vector<DWORD> marked_cell(unsigned marks, int dpi = 96) {
  return PaintedYear(picture_with(marked_day, marks), dpi).cell(marked_day);
}

/// The cell without its colours: whether a pixel is background, or not.
std::vector<bool> shape(unsigned marks, int dpi) {
  const std::vector<DWORD> pixels = marked_cell(marks, dpi);
  std::vector<bool> inked;
  for (const DWORD pixel : pixels) {
    const unsigned light = GetRValue(pixel) + GetGValue(pixel) + GetBValue(pixel);
    inked.push_back(light < 3 * 200);
  }
  return inked;
}

class MarkShapes : public testing::TestWithParam<int> {};

TEST_P(MarkShapes, DifferWithoutTheirColours) {
  std::set<std::vector<bool>> shapes;
  const std::vector<unsigned> all{0u,
                                  mark_closed,
                                  mark_expiration,
                                  mark_roll,
                                  mark_expiration | mark_roll,
                                  mark_expiration | mark_estimate,
                                  mark_roll | mark_estimate,
                                  mark_expiration | mark_roll | mark_estimate,
                                  mark_old_expiration,
                                  mark_old_roll};
  for (const unsigned marks : all) shapes.insert(shape(marks, GetParam()));
  EXPECT_EQ(shapes.size(), all.size());
}

INSTANTIATE_TEST_SUITE_P(YearPainter, MarkShapes, testing::Values(96, 120, 192));

TEST(YearPainter, MarksStayInTheirCell) {
  const PaintedYear plain(picture_with(marked_day, 0));
  const PaintedYear marked(picture_with(marked_day, mark_expiration | mark_roll | mark_closed));
  EXPECT_NE(plain.cell(marked_day), marked.cell(marked_day));
  for (Day other = day(2026, 7, 1); other <= day(2026, 7, 31); other += std::chrono::days{1}) {
    if (other != marked_day) {
      EXPECT_EQ(plain.cell(other), marked.cell(other)) << to_text(other);
    }
  }
}

TEST(YearPainter, HolidaysAreStruckOut) {
  const SIZE size = lay_out_year(least_year_size(96), 96).cell;
  const std::vector<bool> inked = shape(mark_closed, 96);
  const LONG middle = size.cy / 2;
  for (LONG x = size.cx / 5 + 1; x < size.cx * 4 / 5 - 1; ++x)
    EXPECT_TRUE(
        inked.at(static_cast<std::size_t>(middle) * static_cast<std::size_t>(size.cx) + static_cast<std::size_t>(x)))
        << x;
}

TEST(YearPainter, ClosedDaysAreGreyer) {
  EXPECT_NE(marked_cell(mark_weekend), marked_cell(0));
  EXPECT_NE(marked_cell(mark_weekend), marked_cell(mark_closed));
}

TEST(YearPainter, LegendShowsTheDaysBeforeAChangeOnlyInAComparison) {
  YearPicture picture = picture_with(marked_day, 0);
  const std::vector<DWORD> without = PaintedYear(picture).legend();
  picture.texts.before = L"原日期";
  EXPECT_NE(PaintedYear(picture).legend(), without);
}

TEST(YearPainter, LegendFitsTheLeastWidth) {
  YearPicture picture = picture_with(marked_day, 0);
  picture.texts.before = L"before the change";
  picture.texts.closed = L"closed";
  picture.texts.expiration = L"expiration";
  picture.texts.roll = L"roll";
  picture.texts.estimate = L"estimate";
  const PaintedYear painted(picture);
  RECT edge = painted.layout().legend;
  edge.left = edge.right - 4;
  for (const DWORD pixel : painted.part(edge)) EXPECT_EQ(pixel & 0xFFFFFFu, 0xFFFFFFu);
}

}  // namespace
}  // namespace workbench
