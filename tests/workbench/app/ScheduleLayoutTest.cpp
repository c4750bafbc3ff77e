#include <gtest/gtest.h>

#include "ScheduleLayout.h"
#include "YearGeometry.h"

namespace workbench {
namespace {

SIZE size_of(const RECT& part) { return {part.right - part.left, part.bottom - part.top}; }

TEST(ScheduleLayout, PartsFollowOneAnotherDownToTheLowerEdge) {
  for (const int dpi : {96, 120, 144, 192}) {
    const SIZE client{least_schedule_size(dpi).cx + 40, least_schedule_size(dpi).cy + 60};
    const ScheduleLayout layout = lay_out_schedule(client, dpi);
    EXPECT_EQ(layout.heading.top, 0);
    EXPECT_GE(layout.calendar.top, layout.heading.bottom);
    EXPECT_GE(layout.notice.top, layout.calendar.bottom);
    EXPECT_GE(layout.year.top, layout.notice.bottom);
    EXPECT_GE(layout.list.top, layout.year.bottom);
    EXPECT_EQ(layout.list.bottom, client.cy);
  }
}

TEST(ScheduleLayout, ChoicesStandSideBySide) {
  const ScheduleLayout layout = lay_out_schedule(least_schedule_size(96), 96);
  EXPECT_GT(layout.first.left, layout.calendar.right);
  EXPECT_GT(layout.months.left, layout.first.right);
  EXPECT_GT(layout.estimates.left, layout.months.right);
  EXPECT_LE(layout.estimates.right, least_schedule_size(96).cx);
  EXPECT_GT(layout.dismiss.left, layout.notice.right);
}

TEST(ScheduleLayout, LeastSizeShowsTheWholeYear) {
  for (const int dpi : {96, 120, 144, 192}) {
    const ScheduleLayout layout = lay_out_schedule(least_schedule_size(dpi), dpi);
    EXPECT_EQ(lay_out_year(size_of(layout.year), dpi).months.size(), 12u) << dpi;
  }
}

TEST(ScheduleLayout, ListKeepsSomeRowsWhereThereIsLittleRoom) {
  const SIZE client{640, 400};
  EXPECT_GE(size_of(lay_out_schedule(client, 96).list).cy, 100);
}

TEST(ScheduleLayout, SmallAreasTurnNothingInsideOut) {
  for (LONG side = -5; side < 700; side += 3) {
    const ScheduleLayout layout = lay_out_schedule({side, side}, 96);
    for (const RECT& part : {layout.heading, layout.calendar, layout.first, layout.months, layout.estimates,
                             layout.notice, layout.dismiss, layout.year, layout.list}) {
      EXPECT_LE(part.left, part.right) << side;
      EXPECT_LE(part.top, part.bottom) << side;
    }
  }
}

}  // namespace
}  // namespace workbench
