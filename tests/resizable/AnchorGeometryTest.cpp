#include <gtest/gtest.h>

#include <climits>

#include "PrintGeometry.h"
#include "ResizableGeometry.h"

namespace resizable_test {
namespace {

using namespace resizable;

struct PositionCase {
  LONG extent;
  LONG percent;
  LONG position;
};

void expect_positions(std::initializer_list<PositionCase> cases) {
  for (const auto& [extent, percent, position] : cases) {
    EXPECT_EQ(anchor_position(extent, percent), position) << percent << " % of " << extent;
  }
}

TEST(AnchorPosition, TruncatesTowardZero) {
  expect_positions({{0, 100, 0},
                    {300, 0, 0},
                    {300, 50, 150},
                    {301, 50, 150},
                    {301, 100, 301},
                    {99, 1, 0},
                    {199, 1, 1},
                    {300, 150, 450}});
}

TEST(AnchorPosition, TruncatesNegativeProductsTowardZero) {
  expect_positions({{301, -50, -150}, {-301, 50, -150}, {-99, 1, 0}, {-301, -50, 150}});
}

TEST(AnchorPosition, WrapsAroundBeyond32BitsBeforeItDivides) {
  expect_positions({{INT_MAX / 100, 100, INT_MAX / 100},
                    {INT_MAX, 100, -1},
                    {INT_MIN, 100, 0},
                    {INT_MAX, INT_MAX, 0},
                    {INT_MIN, -1, INT_MIN / 100},
                    {0x40000000, 2, INT_MIN / 100}});
}

/// A child between two anchors in a parent whose client area changes from one size to another.
struct RectCase {
  const char* name = "";
  CSize top_left, bottom_right;
  CSize old_extent, new_extent;
  RECT before = {}, after = {};
};

// clang-format off
const RectCase rect_cases[] = {
    {"top left stays", TOP_LEFT, TOP_LEFT, {300, 200}, {350, 260}, {10, 20, 60, 40}, {10, 20, 60, 40}},
    {"stretches both ways", TOP_LEFT, BOTTOM_RIGHT, {300, 200}, {350, 260}, {10, 20, 60, 40}, {10, 20, 110, 100}},
    {"top right", TOP_RIGHT, TOP_RIGHT, {300, 200}, {350, 260}, {240, 20, 290, 40}, {290, 20, 340, 40}},
    {"bottom right", BOTTOM_RIGHT, BOTTOM_RIGHT, {300, 200}, {350, 260}, {240, 170, 290, 190}, {290, 230, 340, 250}},
    {"top centre", TOP_CENTER, TOP_CENTER, {300, 200}, {351, 260}, {140, 20, 160, 40}, {165, 20, 185, 40}},
    {"middle left", MIDDLE_LEFT, MIDDLE_LEFT, {300, 200}, {350, 261}, {10, 90, 60, 110}, {10, 120, 60, 140}},
    {"middle right", MIDDLE_RIGHT, MIDDLE_RIGHT, {300, 200}, {350, 260}, {240, 90, 290, 110}, {290, 120, 340, 140}},
    {"bottom left", BOTTOM_LEFT, BOTTOM_LEFT, {300, 200}, {350, 260}, {10, 170, 60, 190}, {10, 230, 60, 250}},
    {"bottom centre to bottom right", BOTTOM_CENTER, BOTTOM_RIGHT, {300, 200}, {400, 260}, {150, 170, 290, 190},
     {200, 230, 390, 250}},
    {"middle centre of an odd extent", MIDDLE_CENTER, MIDDLE_CENTER, {301, 201}, {302, 202}, {150, 100, 170, 120},
     {151, 101, 171, 121}},
    {"shrinks beyond nothing", TOP_LEFT, BOTTOM_RIGHT, {300, 200}, {0, 0}, {10, 20, 290, 190}, {10, 20, -10, -10}},
    {"anchors outside the parent", {-50, -50}, {150, 150}, {300, 200}, {400, 300}, {10, 20, 290, 190},
     {-40, -30, 440, 340}},
    {"wraps around and comes back", BOTTOM_RIGHT, BOTTOM_RIGHT, {INT_MAX, INT_MAX}, {INT_MAX, INT_MAX},
     {10, 20, 290, 190}, {10, 20, 290, 190}},
};
// clang-format on

TEST(AnchoredRect, FollowsItsAnchors) {
  for (const RectCase& test : rect_cases) {
    const RECT old_parent{0, 0, test.old_extent.cx, test.old_extent.cy};
    const RECT new_parent{0, 0, test.new_extent.cx, test.new_extent.cy};
    const Corner start = measured_corner(old_parent, test.top_left, {test.before.left, test.before.top});
    const Corner end = measured_corner(old_parent, test.bottom_right, {test.before.right, test.before.bottom});
    EXPECT_EQ(anchored_rect(old_parent, start, end), test.before) << test.name << ", measured and put back";
    EXPECT_EQ(anchored_rect(new_parent, start, end), test.after) << test.name;
  }
}

TEST(AnchoredRect, CountsFromTheParentsOrigin) {
  const Corner corner = measured_corner({100, 50, 400, 250}, BOTTOM_RIGHT, {390, 240});
  EXPECT_EQ(corner.margin, CSize(-10, -10));
  EXPECT_EQ(anchored_rect({0, 0, 300, 200}, corner, corner), (RECT{290, 190, 290, 190}));
  EXPECT_EQ(anchored_rect({5, 7, 305, 207}, corner, corner), (RECT{295, 197, 295, 197}));
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

TEST(MoveFlags, SayWhetherAnythingMoves) {
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

}  // namespace
}  // namespace resizable_test
