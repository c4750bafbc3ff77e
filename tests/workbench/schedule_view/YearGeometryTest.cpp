#include <gtest/gtest.h>

#include <ostream>

#include "ScheduleSamples.h"
#include "YearGeometry.h"

namespace workbench {
namespace {

struct Area {
  SIZE size;
  int dpi;
  int columns;
  std::size_t months;
  SIZE cell;
};

void PrintTo(const Area& parameter, std::ostream* out) {
  *out << parameter.size.cx << " x " << parameter.size.cy << " at " << parameter.dpi;
}

int columns_of(const YearLayout& layout) {
  int columns = 0;
  for (const RECT& month : layout.months) columns += month.top == layout.months.front().top ? 1 : 0;
  return columns;
}

class YearLayouts : public testing::TestWithParam<Area> {};

TEST_P(YearLayouts, TakeTheShapeWithTheLargestCells) {
  const YearLayout layout = lay_out_year(GetParam().size, GetParam().dpi);
  EXPECT_EQ(columns_of(layout), GetParam().columns);
  EXPECT_EQ(layout.months.size(), GetParam().months);
  EXPECT_EQ(layout.cell.cx, GetParam().cell.cx);
  EXPECT_EQ(layout.cell.cy, GetParam().cell.cy);
}

INSTANTIATE_TEST_SUITE_P(YearGeometry, YearLayouts,
                         testing::Values(Area{{618, 450}, 96, 4, 12, {21, 16}},    // the least year
                                         Area{{1236, 900}, 192, 4, 12, {42, 32}},  // the same, twice as fine
                                         Area{{750, 460}, 96, 4, 12, {25, 16}},    //
                                         Area{{1000, 330}, 96, 6, 12, {22, 17}},   // low and wide
                                         Area{{4000, 4000}, 96, 4, 12, {34, 26}},  // no larger than is pleasant
                                         Area{{470, 600}, 96, 3, 12, {21, 16}},    // narrow
                                         Area{{400, 200}, 96, 2, 2, {21, 16}},     // too small for twelve
                                         Area{{1, 1}, 96, 1, 1, {21, 16}}));

TEST(YearGeometry, PartsNeverOverlapAndStayInside) {
  for (const int dpi : {96, 120, 144, 192}) {
    for (LONG width = least_year_size(dpi).cx; width < 2500; width += 97) {
      const SIZE area{width, least_year_size(dpi).cy + width / 7};
      const YearLayout layout = lay_out_year(area, dpi);
      ASSERT_EQ(layout.months.size(), 12u) << width << " at " << dpi;
      for (std::size_t at = 0; at < layout.months.size(); ++at) {
        const RECT& month = layout.months[at];
        EXPECT_GE(month.left, 0);
        EXPECT_LE(month.right, area.cx) << width << " at " << dpi;
        EXPECT_LE(month.bottom, layout.legend.top);
        for (std::size_t other = 0; other < at; ++other) {
          RECT common{};
          EXPECT_FALSE(IntersectRect(&common, &month, &layout.months[other])) << at << ' ' << other;
        }
      }
      EXPECT_LE(layout.legend.bottom, area.cy) << width << " at " << dpi;
    }
  }
}

TEST(YearGeometry, SmallAreasKeepOneReadableMonth) {
  for (LONG side = 0; side < 300; side += 3) {
    const YearLayout layout = lay_out_year({side, side}, 96);
    EXPECT_GE(layout.months.size(), 1u);
    EXPECT_EQ(layout.cell.cx, 21);
  }
}

TEST(YearGeometry, DaysStandUnderTheirWeekdays) {
  const YearLayout layout = lay_out_year({618, 450}, 96);
  const Month first = contract(2026, 1);
  // 2026-01-01 is a Thursday, 2026-03-01 a Sunday.
  EXPECT_EQ(day_cell(layout, first, day(2026, 1, 1))->left, weekday_cell(layout, 0, 3).left);
  EXPECT_EQ(day_cell(layout, first, day(2026, 1, 1))->top, weekday_cell(layout, 0, 3).bottom);
  EXPECT_EQ(day_cell(layout, first, day(2026, 3, 1))->left, weekday_cell(layout, 2, 6).left);
  EXPECT_EQ(day_cell(layout, first, day(2026, 3, 31))->bottom, layout.months[2].bottom) << "the sixth week";
  EXPECT_EQ(title_of(layout, 2).bottom, weekday_cell(layout, 2, 0).top);
}

TEST(YearGeometry, DaysOutsideTheYearHaveNoCell) {
  const YearLayout layout = lay_out_year({618, 450}, 96);
  EXPECT_FALSE(day_cell(layout, contract(2026, 1), day(2025, 12, 31)));
  EXPECT_FALSE(day_cell(layout, contract(2026, 1), day(2027, 1, 1)));
  EXPECT_TRUE(day_cell(layout, contract(2026, 11), day(2027, 10, 31)));
}

TEST(YearGeometry, EachDayIsFoundAtTheMiddleOfItsCell) {
  const YearLayout layout = lay_out_year({618, 450}, 96);
  const Month first = contract(2026, 11);
  for (Day each = day(2026, 11, 1); each < day(2027, 11, 1); each += std::chrono::days{1}) {
    const RECT cell = *day_cell(layout, first, each);
    EXPECT_EQ(day_at(layout, first, {(cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2}), each);
  }
}

TEST(YearGeometry, ThereIsNoDayBesideTheDays) {
  const YearLayout layout = lay_out_year({618, 450}, 96);
  const RECT title = title_of(layout, 0);
  EXPECT_FALSE(day_at(layout, contract(2026, 1), {title.left + 1, title.top + 1}));
  EXPECT_FALSE(day_at(layout, contract(2026, 1), {-5, -5}));
  // 2026-01-01 is a Thursday.
  const RECT monday = weekday_cell(layout, 0, 0);
  EXPECT_FALSE(day_at(layout, contract(2026, 1), {monday.left + 1, monday.bottom + 1}));
}

}  // namespace
}  // namespace workbench
