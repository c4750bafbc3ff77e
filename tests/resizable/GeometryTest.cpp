#include <gtest/gtest.h>

#include <climits>

#include "PrintGeometry.h"
#include "ResizableGeometry.h"

namespace resizable_test {
namespace {

using namespace resizable;

constexpr LONG caption = 19;

struct PositionCase {
  LONG extent;
  LONG percent;
  LONG position;
};

class AnchorPosition : public testing::TestWithParam<PositionCase> {};

TEST_P(AnchorPosition, IsThePercentageTruncatedTowardZero) {
  EXPECT_EQ(anchor_position(GetParam().extent, GetParam().percent), GetParam().position);
}

INSTANTIATE_TEST_SUITE_P(Table, AnchorPosition,
                         testing::Values(PositionCase{0, 100, 0}, PositionCase{300, 0, 0}, PositionCase{300, 50, 150},
                                         PositionCase{301, 50, 150}, PositionCase{301, 100, 301},
                                         PositionCase{99, 1, 0}, PositionCase{199, 1, 1}, PositionCase{301, -50, -150},
                                         PositionCase{-301, 50, -150}, PositionCase{-99, 1, 0},
                                         PositionCase{-301, -50, 150}, PositionCase{300, 150, 450}));

// Products beyond 32 bits wrap around as two's complement numbers do, and only then are divided.
INSTANTIATE_TEST_SUITE_P(Extremes, AnchorPosition,
                         testing::Values(PositionCase{INT_MAX / 100, 100, INT_MAX / 100},
                                         PositionCase{INT_MAX, 100, -1}, PositionCase{INT_MIN, 100, 0},
                                         PositionCase{INT_MAX, INT_MAX, 0}, PositionCase{INT_MIN, -1, INT_MIN / 100},
                                         PositionCase{0x40000000, 2, INT_MIN / 100}));

struct RectCase {
  const char* name;
  CSize top_left;
  CSize bottom_right;
  CSize old_extent;
  CSize new_extent;
  RECT before;
  RECT after;
};

class AnchoredRect : public testing::TestWithParam<RectCase> {};

TEST_P(AnchoredRect, FollowsItsAnchors) {
  const RectCase& rect = GetParam();
  const RECT old_parent{0, 0, rect.old_extent.cx, rect.old_extent.cy};
  const RECT new_parent{0, 0, rect.new_extent.cx, rect.new_extent.cy};
  const Corner start = measured_corner(old_parent, rect.top_left, {rect.before.left, rect.before.top});
  const Corner end = measured_corner(old_parent, rect.bottom_right, {rect.before.right, rect.before.bottom});
  EXPECT_EQ(anchored_rect(old_parent, start, end), rect.before) << "measured and put back";
  EXPECT_EQ(anchored_rect(new_parent, start, end), rect.after);
}

INSTANTIATE_TEST_SUITE_P(
    Table, AnchoredRect,
    testing::Values(
        RectCase{"TopLeftStays", TOP_LEFT, TOP_LEFT, {300, 200}, {350, 260}, {10, 20, 60, 40}, {10, 20, 60, 40}},
        RectCase{"StretchesBoth", TOP_LEFT, BOTTOM_RIGHT, {300, 200}, {350, 260}, {10, 20, 60, 40}, {10, 20, 110, 100}},
        RectCase{"TopRightMoves", TOP_RIGHT, TOP_RIGHT, {300, 200}, {350, 260}, {240, 20, 290, 40}, {290, 20, 340, 40}},
        RectCase{"BottomRightMoves",
                 BOTTOM_RIGHT,
                 BOTTOM_RIGHT,
                 {300, 200},
                 {350, 260},
                 {240, 170, 290, 190},
                 {290, 230, 340, 250}},
        RectCase{"TopCenterMovesByHalf",
                 TOP_CENTER,
                 TOP_CENTER,
                 {300, 200},
                 {351, 260},
                 {140, 20, 160, 40},
                 {165, 20, 185, 40}},
        RectCase{"MiddleLeftMovesByHalf",
                 MIDDLE_LEFT,
                 MIDDLE_LEFT,
                 {300, 200},
                 {350, 261},
                 {10, 90, 60, 110},
                 {10, 120, 60, 140}},
        RectCase{"MiddleRight",
                 MIDDLE_RIGHT,
                 MIDDLE_RIGHT,
                 {300, 200},
                 {350, 260},
                 {240, 90, 290, 110},
                 {290, 120, 340, 140}},
        RectCase{"BottomLeftMovesDown",
                 BOTTOM_LEFT,
                 BOTTOM_LEFT,
                 {300, 200},
                 {350, 260},
                 {10, 170, 60, 190},
                 {10, 230, 60, 250}},
        RectCase{"BottomCenterToBottomRight",
                 BOTTOM_CENTER,
                 BOTTOM_RIGHT,
                 {300, 200},
                 {400, 260},
                 {150, 170, 290, 190},
                 {200, 230, 390, 250}},
        RectCase{"MiddleCenterFromOddExtent",
                 MIDDLE_CENTER,
                 MIDDLE_CENTER,
                 {301, 201},
                 {302, 202},
                 {150, 100, 170, 120},
                 {151, 101, 171, 121}},
        RectCase{"ShrinksToNothingAndBeyond",
                 TOP_LEFT,
                 BOTTOM_RIGHT,
                 {300, 200},
                 {0, 0},
                 {10, 20, 290, 190},
                 {10, 20, -10, -10}},
        RectCase{"OutsideThePercentages",
                 {-50, -50},
                 {150, 150},
                 {300, 200},
                 {400, 300},
                 {10, 20, 290, 190},
                 {-40, -30, 440, 340}},
        RectCase{"WrapsAroundAndComesBack",
                 BOTTOM_RIGHT,
                 BOTTOM_RIGHT,
                 {INT_MAX, INT_MAX},
                 {INT_MAX, INT_MAX},
                 {10, 20, 290, 190},
                 {10, 20, 290, 190}}),
    [](const auto& test) { return test.param.name; });

TEST(AnchoredRect, CountsFromTheParentsOrigin) {
  const RECT parent{100, 50, 400, 250};
  const Corner corner = measured_corner(parent, BOTTOM_RIGHT, {390, 240});
  EXPECT_EQ(corner.margin, CSize(-10, -10));
  const RECT moved{0, 0, 300, 200};
  EXPECT_EQ(anchored_rect(moved, corner, corner), (RECT{290, 190, 290, 190}));
}

TEST(MoveFlags, KeepOrderOwnerAndActivationAlways) {
  EXPECT_EQ(move_flags({0, 0, 10, 10}, {5, 5, 30, 30}, false), 0x214U);
}

TEST(MoveFlags, KeepNothingOfThePictureForAChildThatMustRepaint) {
  EXPECT_EQ(move_flags({0, 0, 10, 10}, {5, 5, 30, 30}, true), 0x314U);
}

TEST(MoveFlags, NameWhatStays) {
  EXPECT_EQ(move_flags({0, 0, 10, 10}, {0, 0, 30, 10}, false), 0x214U | SWP_NOMOVE);
  EXPECT_EQ(move_flags({0, 0, 10, 10}, {0, 5, 10, 15}, false), 0x214U | SWP_NOSIZE);
  EXPECT_EQ(move_flags({0, 0, 10, 10}, {0, 0, 10, 10}, false), 0x214U | SWP_NOSIZE | SWP_NOMOVE);
  EXPECT_EQ(move_flags({0, 0, 10, 10}, {0, 0, 10, 11}, false), 0x214U | SWP_NOMOVE) << "one side is enough";
}

TEST(MoveFlags, TellWhetherAnythingMoves) {
  EXPECT_TRUE(moves_nothing(move_flags({1, 2, 3, 4}, {1, 2, 3, 4}, true)));
  EXPECT_FALSE(moves_nothing(move_flags({1, 2, 3, 4}, {1, 2, 3, 5}, false)));
  EXPECT_FALSE(moves_nothing(move_flags({1, 2, 3, 4}, {2, 3, 4, 5}, false)));
}

TEST(GripGeometry, TriangleIsTheLowerRightHalf) {
  const auto triangle = grip_triangle({17, 15});
  EXPECT_EQ(triangle[0].x, 0);
  EXPECT_EQ(triangle[0].y, 15);
  EXPECT_EQ(triangle[1].x, 17);
  EXPECT_EQ(triangle[1].y, 15);
  EXPECT_EQ(triangle[2].x, 17);
  EXPECT_EQ(triangle[2].y, 0);
}

TEST(GripGeometry, FillsTheCorner) {
  const POINT position = grip_position({0, 0, 300, 200}, {17, 15});
  EXPECT_EQ(position.x, 283);
  EXPECT_EQ(position.y, 185);
}

TEST(GripGeometry, KeepsTheCornerWhenItsSizeChanges) {
  EXPECT_EQ(resized_grip({283, 185, 300, 200}, {17, 15}, {30, 20}), (RECT{270, 180, 300, 200}));
  EXPECT_EQ(resized_grip({283, 185, 300, 200}, {17, 15}, {10, 10}), (RECT{290, 190, 300, 200}));
}

class TrackingLimitsTest : public testing::Test {
 protected:
  TrackingLimitsTest() {
    limits.min_track = {1, 2};
    limits.max_track = {3, 4};
    limits.max_position = {5, 6};
    limits.max_size = {7, 8};
  }
  TrackingLimits limits;
  MINMAXINFO info{{90, 91}, {92, 93}, {94, 95}, {96, 97}, {98, 99}};
};

TEST_F(TrackingLimitsTest, ChangeNothingWhileNoneIsInUse) {
  const MINMAXINFO before = info;
  apply_limits(limits, info);
  EXPECT_EQ(memcmp(&info, &before, sizeof info), 0);
}

TEST_F(TrackingLimitsTest, ChangeOnlyWhatTheyLimit) {
  limits.use_min_track = TRUE;
  apply_limits(limits, info);
  const MINMAXINFO with_minimum{{90, 91}, {92, 93}, {94, 95}, {1, 2}, {98, 99}};
  EXPECT_EQ(memcmp(&info, &with_minimum, sizeof info), 0);

  limits.use_max_track = TRUE;
  apply_limits(limits, info);
  const MINMAXINFO with_maximum{{90, 91}, {92, 93}, {94, 95}, {1, 2}, {3, 4}};
  EXPECT_EQ(memcmp(&info, &with_maximum, sizeof info), 0);

  limits.use_max_rect = TRUE;
  apply_limits(limits, info);
  const MINMAXINFO with_all{{90, 91}, {7, 8}, {5, 6}, {1, 2}, {3, 4}};
  EXPECT_EQ(memcmp(&info, &with_all, sizeof info), 0);
}

TEST(OpeningHeight, LiesUpToOneCaptionBelowTheSmallest) {
  EXPECT_FALSE(is_opening_height(300, 300, caption));
  EXPECT_TRUE(is_opening_height(299, 300, caption));
  EXPECT_TRUE(is_opening_height(300 - caption, 300, caption));
  EXPECT_FALSE(is_opening_height(299 - caption, 300, caption));
  EXPECT_FALSE(is_opening_height(INT_MAX, INT_MIN, caption));
  EXPECT_TRUE(is_opening_height(INT_MIN, INT_MIN + 1, caption));
}

TEST(ValidPart, IsWhereNewWindowAndOldClientAreaOverlap) {
  NCCALCSIZE_PARAMS params{};
  params.rgrc[0] = {0, 0, 200, 100};
  params.rgrc[1] = {1, 1, 1, 1};
  params.rgrc[2] = {2, 2, 2, 2};
  keep_valid_part(params, {50, 60, 300, 400});
  EXPECT_EQ(params.rgrc[0], (RECT{0, 0, 200, 100}));
  EXPECT_EQ(params.rgrc[1], (RECT{50, 60, 200, 100}));
  EXPECT_EQ(params.rgrc[2], (RECT{50, 60, 200, 100}));
}

TEST(ValidPart, IsEmptyWhereNothingOverlaps) {
  NCCALCSIZE_PARAMS params{};
  params.rgrc[0] = {0, 0, 20, 10};
  keep_valid_part(params, {50, 60, 300, 400});
  EXPECT_EQ(params.rgrc[1], RECT{});
  EXPECT_EQ(params.rgrc[2], RECT{});
}

TEST(WindowRegion, IsDroppedUnderACaptionThatIsNotMaximised) {
  EXPECT_TRUE(drops_window_region(WS_POPUP | WS_CAPTION | WS_THICKFRAME, 0x501));
  EXPECT_TRUE(drops_window_region(WS_CAPTION, 0xA00));
  EXPECT_FALSE(drops_window_region(WS_CAPTION | WS_MAXIMIZE, 0xA00));
  EXPECT_FALSE(drops_window_region(WS_BORDER, 0xA00)) << "half a caption";
  EXPECT_FALSE(drops_window_region(WS_POPUP, 0xA00));
  EXPECT_FALSE(drops_window_region(WS_CAPTION, 0x500)) << "before themed frames";
}

TEST(ReopeningCommand, NeverMinimises) {
  WINDOWPLACEMENT placement{};
  placement.showCmd = SW_SHOWMINIMIZED;
  EXPECT_EQ(reopening_command(placement, true, false), UINT{SW_SHOW});
  placement.flags = WPF_RESTORETOMAXIMIZED;
  EXPECT_EQ(reopening_command(placement, true, false), UINT{SW_SHOWMAXIMIZED});
}

TEST(ReopeningCommand, KeepsMaximisedAndNormal) {
  WINDOWPLACEMENT placement{};
  placement.showCmd = SW_SHOWNORMAL;
  EXPECT_EQ(reopening_command(placement, false, false), UINT{SW_SHOWNORMAL});
  placement.showCmd = SW_SHOWMAXIMIZED;
  EXPECT_EQ(reopening_command(placement, false, false), UINT{SW_SHOWMAXIMIZED});
}

TEST(ReopeningCommand, IsNormalWhenOnlyTheRectangleIsKept) {
  WINDOWPLACEMENT placement{};
  placement.showCmd = SW_SHOWMAXIMIZED;
  placement.flags = WPF_RESTORETOMAXIMIZED;
  EXPECT_EQ(reopening_command(placement, true, true), UINT{SW_SHOWNORMAL});
}

TEST(StoredBottom, LiesOneCaptionHigher) {
  RECT rect{1, 2, 3, 400};
  lower_bottom(rect, caption);
  EXPECT_EQ(rect, (RECT{1, 2, 3, 400 - caption}));
  raise_bottom(rect, caption);
  EXPECT_EQ(rect, (RECT{1, 2, 3, 400}));
}

TEST(StoredBottom, StopsAtTheEndsOfTheRange) {
  RECT rect{0, 0, 0, INT_MAX - 3};
  raise_bottom(rect, caption);
  EXPECT_EQ(rect.bottom, INT_MAX);
  rect.bottom = INT_MIN + 3;
  lower_bottom(rect, caption);
  EXPECT_EQ(rect.bottom, INT_MIN);
}

struct FitCase {
  const char* name;
  RECT rect;
  RECT work;
  RECT cursor_work;
  RECT fitted;
};

class FittedRect : public testing::TestWithParam<FitCase> {};

TEST_P(FittedRect, LiesInTheWorkAreaUnderTheCursor) {
  EXPECT_EQ(fitted_rect(GetParam().rect, GetParam().work, GetParam().cursor_work), GetParam().fitted);
}

// The first screen has a bar on the left and one on top; the second lies to its right and is smaller.
constexpr RECT first{60, 30, 1280, 1024};
constexpr RECT second{1280, 0, 2080, 600};
constexpr RECT left_of_first{-800, 100, 0, 700};

INSTANTIATE_TEST_SUITE_P(
    Table, FittedRect,
    testing::Values(FitCase{"InsideStays", {100, 100, 400, 300}, first, first, {100, 100, 400, 300}},
                    FitCase{"LeftOfTheWorkArea", {0, 100, 300, 300}, first, first, {60, 100, 360, 300}},
                    FitCase{"AboveTheWorkArea", {100, 0, 400, 200}, first, first, {100, 30, 400, 230}},
                    FitCase{"BeyondTheRight", {1200, 100, 1500, 300}, first, first, {980, 100, 1280, 300}},
                    FitCase{"BeyondTheBottom", {100, 1000, 400, 1200}, first, first, {100, 824, 400, 1024}},
                    FitCase{"OffEveryMonitor", {-30000, 20000, -29700, 20200}, first, first, {60, 824, 360, 1024}},
                    FitCase{"WiderThanTheWorkArea", {500, 100, 3000, 300}, first, first, {60, 100, 2560, 300}},
                    FitCase{"HigherThanTheWorkArea", {500, 100, 700, 3000}, first, first, {500, 30, 700, 2930}},
                    FitCase{"ToTheMonitorUnderTheCursor", {100, 130, 400, 330}, first, second, {1320, 100, 1620, 300}},
                    FitCase{"BackFromTheSecondMonitor", {1320, 100, 1620, 300}, second, first, {100, 130, 400, 330}},
                    FitCase{
                        "ToNegativeCoordinates", {100, 130, 400, 330}, first, left_of_first, {-760, 200, -460, 400}},
                    FitCase{"PulledInThenMoved", {5000, 5000, 5300, 5200}, first, second, {2200, 794, 2500, 994}},
                    FitCase{"Empty", {0, 0, 0, 0}, first, first, {60, 30, 60, 30}},
                    FitCase{"TurnedAround", {400, 300, 100, 100}, first, first, {400, 300, 100, 100}}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Extremes, FittedRect,
    testing::Values(
        FitCase{"WholeRange", {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, first, first, {60, 30, INT_MAX, INT_MAX}},
        FitCase{"FarRight", {INT_MAX - 300, 0, INT_MAX, 200}, first, first, {980, 30, 1280, 230}},
        FitCase{"FarLeft", {INT_MIN, INT_MIN, INT_MIN + 300, INT_MIN + 200}, first, first, {60, 30, 360, 230}},
        FitCase{"TurnedAroundRange",
                {INT_MAX, INT_MAX, INT_MIN, INT_MIN},
                first,
                first,
                {INT_MAX, INT_MAX, INT_MIN, INT_MIN}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace resizable_test
