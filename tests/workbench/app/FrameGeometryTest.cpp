#include <gtest/gtest.h>

#include <ostream>

#include "FrameGeometry.h"

namespace workbench {
namespace {

const FrameMetrics metrics{.margin = 8,
                           .heading_height = 20,
                           .splitter_height = 6,
                           .least_list_height = 90,
                           .least_lists_width = 240,
                           .least_schedule_width = 300,
                           .status_height = 22};

// 16 of margins, 40 of headings, 6 of splitter and 22 of status bar leave 400 to the lists.
constexpr SIZE client{600, 484};

int height(const RECT& rect) { return rect.bottom - rect.top; }

TEST(FrameGeometry, PartsFollowOneAnotherWithoutGaps) {
  const FrameLayout layout = lay_out_frame(client, {.rows = 0.5}, metrics);
  EXPECT_EQ(layout.rules_heading.top, 8);
  EXPECT_EQ(layout.rules_heading.bottom, layout.rules.top);
  EXPECT_EQ(layout.rules.bottom, layout.splitter.top);
  EXPECT_EQ(layout.splitter.bottom, layout.settings_heading.top);
  EXPECT_EQ(layout.settings_heading.bottom, layout.settings.top);
  EXPECT_EQ(layout.settings.bottom, client.cy - 22 - 8);
}

TEST(FrameGeometry, ListsSpanTheLeftColumnAndTheScheduleTheRightOne) {
  const FrameLayout layout = lay_out_frame(client, {.rows = 0.5}, metrics);
  for (const RECT& part :
       {layout.rules_heading, layout.rules, layout.splitter, layout.settings_heading, layout.settings}) {
    EXPECT_EQ(part.left, 8);
    EXPECT_EQ(part.right, layout.column_splitter.left);
  }
  EXPECT_EQ(layout.column_splitter.right, layout.schedule.left);
  EXPECT_EQ(layout.schedule.right, 592);
  EXPECT_EQ(layout.schedule.top, 8);
  EXPECT_EQ(layout.schedule.bottom, layout.settings.bottom);
}

struct Split {
  double split;
  int upper;
  int lower;
};

void PrintTo(const Split& parameter, std::ostream* out) { *out << parameter.split; }

class FrameSplit : public testing::TestWithParam<Split> {};

TEST_P(FrameSplit, SharesTheHeightOfTheLists) {
  const FrameLayout layout = lay_out_frame(client, {.rows = GetParam().split}, metrics);
  EXPECT_EQ(height(layout.rules), GetParam().upper);
  EXPECT_EQ(height(layout.settings), GetParam().lower);
}

INSTANTIATE_TEST_SUITE_P(FrameGeometry, FrameSplit,
                         testing::Values(Split{0.5, 200, 200}, Split{0.25, 100, 300}, Split{0.0, 90, 310},
                                         Split{1.0, 310, 90}, Split{-3.0, 90, 310}, Split{7.0, 310, 90}));

TEST(FrameGeometry, ColumnsKeepTheirLeastWidths) {
  const SIZE wide{1000, 484};
  EXPECT_EQ(lay_out_frame(wide, {.columns = 0}, metrics).rules.right - 8, 240);
  EXPECT_EQ(592 + 400 - lay_out_frame(wide, {.columns = 1}, metrics).schedule.left, 300);
  EXPECT_EQ(lay_out_frame(wide, {.columns = 0.5}, metrics).rules.right, 8 + (1000 - 16 - 6) / 2);
}

TEST(FrameGeometry, DraggingTheSplitterBetweenTheColumnsPutsItUnderTheCursor) {
  const SIZE wide{1000, 484};
  for (int left = 250; left <= 680; ++left) {
    const FrameLayout layout = lay_out_frame(wide, {.columns = column_split_for(left, wide, metrics)}, metrics);
    EXPECT_NEAR(layout.column_splitter.left, left, 1);
  }
  EXPECT_EQ(column_split_for(50, {10, 10}, metrics), 0);
}

TEST(FrameGeometry, SmallClientAreasTurnNothingInsideOut) {
  for (LONG side = 0; side < 300; ++side) {
    const FrameLayout layout = lay_out_frame({side, side}, {.rows = 0.6}, metrics);
    for (const RECT& part : {layout.rules_heading, layout.rules, layout.splitter, layout.settings_heading,
                             layout.settings, layout.column_splitter, layout.schedule}) {
      EXPECT_LE(part.left, part.right) << side;
      EXPECT_LE(part.top, part.bottom) << side;
    }
  }
}

TEST(FrameGeometry, LeastClientSizeGivesBothListsTheirLeastHeight) {
  const FrameLayout layout = lay_out_frame(least_client_size(metrics), {.rows = 0.5}, metrics);
  EXPECT_EQ(height(layout.rules), 90);
  EXPECT_EQ(height(layout.settings), 90);
}

TEST(FrameGeometry, DraggingTheSplitterPutsItUnderTheCursor) {
  for (int top = 118; top <= 338; ++top) {
    const FrameLayout layout = lay_out_frame(client, {.rows = split_for(top, client, metrics)}, metrics);
    EXPECT_NEAR(layout.splitter.top, top, 1);
  }
}

TEST(FrameGeometry, DraggingTheSplitterTooFarKeepsTheLeastHeights) {
  EXPECT_EQ(height(lay_out_frame(client, {.rows = split_for(-500, client, metrics)}, metrics).rules), 90);
  EXPECT_EQ(height(lay_out_frame(client, {.rows = split_for(5000, client, metrics)}, metrics).settings), 90);
}

TEST(FrameGeometry, SplitOfAClientAreaWithoutRoomIsZero) { EXPECT_EQ(split_for(50, {10, 10}, metrics), 0); }

TEST(FrameGeometry, CenteredRectangleKeepsItsSizeWhereThereIsRoom) {
  const RECT rect = centered({100, -50, 1100, 750}, {400, 300});
  const RECT middle{400, 200, 800, 500};
  EXPECT_TRUE(EqualRect(&rect, &middle));
}

TEST(FrameGeometry, CenteredRectangleIsNeverLargerThanItsArea) {
  const RECT area{100, 100, 300, 200};
  const RECT rect = centered(area, {400, 300});
  EXPECT_TRUE(EqualRect(&rect, &area));
}

TEST(FrameGeometry, MetricsGrowWithTheResolution) {
  EXPECT_EQ(frame_metrics(192, 30).margin, 2 * frame_metrics(96, 30).margin);
  EXPECT_EQ(frame_metrics(144, 30).status_height, 30);
}

TEST(FrameGeometry, StatusPartsKeepTheirOrderAtEveryWidth) {
  for (int width = 0; width < 2000; width += 7) {
    const StatusEdges status = status_edges(width, 96);
    EXPECT_GE(status.edges[0], 0) << width;
    EXPECT_LE(status.edges[0], status.edges[1]) << width;
    EXPECT_EQ(status.edges[2], -1);
  }
}

}  // namespace
}  // namespace workbench
