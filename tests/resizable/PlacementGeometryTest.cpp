#include <gtest/gtest.h>

#include <climits>

#include "PrintGeometry.h"
#include "ResizableGeometry.h"

namespace resizable_test {
namespace {

using namespace resizable;

constexpr LONG caption = 19;

TEST(OpeningHeight, LiesUpToOneCaptionBelowTheSmallest) {
  EXPECT_FALSE(is_opening_height(300, 300, caption));
  EXPECT_TRUE(is_opening_height(299, 300, caption));
  EXPECT_TRUE(is_opening_height(300 - caption, 300, caption));
  EXPECT_FALSE(is_opening_height(299 - caption, 300, caption));
  EXPECT_FALSE(is_opening_height(INT_MAX, INT_MIN, caption));
  EXPECT_TRUE(is_opening_height(INT_MIN, INT_MIN + 1, caption));
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

TEST(HeldRect, IsAtLeastAsLargeAsTheWindowWillBe) {
  constexpr CSize smallest(300, 200);
  constexpr LONG end = INT_MAX;
  const struct {
    RECT rect;
    RECT held;
  } cases[] = {{{10, 20, 310, 220}, {10, 20, 310, 220}},
               {{10, 20, 500, 600}, {10, 20, 500, 600}},
               {{10, 20, 110, 600}, {10, 20, 310, 600}},
               {{10, 20, 500, 30}, {10, 20, 500, 220}},
               {{10, 20, 10, 20}, {10, 20, 310, 220}},
               {{500, 600, 10, 20}, {500, 600, 800, 800}},
               {{end, end, -end - 1, -end - 1}, {end - 300, end - 200, end, end}},
               {{-end - 1, -end - 1, end, end}, {-end - 1, -end - 1, end, end}}};
  for (const auto& test : cases) EXPECT_EQ(held_rect(test.rect, smallest, caption), test.held);
}

TEST(HeldRect, MayHaveAnOpeningHeight) {
  for (LONG height = 200 - caption; height <= 200; ++height) {
    const RECT rect = {10, 20, 310, 20 + height};
    EXPECT_EQ(held_rect(rect, {300, 200}, caption), rect);
  }
  EXPECT_EQ(held_rect({10, 20, 310, 220 - caption - 1}, {300, 200}, caption), (RECT{10, 20, 310, 220}));
  EXPECT_EQ(held_rect({0, INT_MAX, 300, INT_MIN + 189}, {300, 200}, caption), (RECT{0, INT_MAX - 200, 300, INT_MAX}))
      << "turned around, not 190 high";
}

struct FitCase {
  const char* name;
  RECT rect;
  RECT work;
  RECT cursor_work;
  RECT fitted;
};

void expect_fitted(std::initializer_list<FitCase> cases) {
  for (const FitCase& test : cases) {
    EXPECT_EQ(fitted_rect(test.rect, test.work, test.cursor_work), test.fitted) << test.name;
  }
}

// The first screen has a bar on the left and one on top; the second lies to its right and is smaller.
constexpr RECT first{60, 30, 1280, 1024};
constexpr RECT second{1280, 0, 2080, 600};
constexpr RECT left_of_first{-800, 100, 0, 700};

TEST(FittedRect, IsPulledIntoTheWorkArea) {
  expect_fitted({{"inside", {100, 100, 400, 300}, first, first, {100, 100, 400, 300}},
                 {"left of it", {0, 100, 300, 300}, first, first, {60, 100, 360, 300}},
                 {"above it", {100, 0, 400, 200}, first, first, {100, 30, 400, 230}},
                 {"beyond its right", {1200, 100, 1500, 300}, first, first, {980, 100, 1280, 300}},
                 {"beyond its bottom", {100, 1000, 400, 1200}, first, first, {100, 824, 400, 1024}},
                 {"off every monitor", {-30000, 20000, -29700, 20200}, first, first, {60, 824, 360, 1024}},
                 {"empty", {0, 0, 0, 0}, first, first, {60, 30, 60, 30}},
                 {"turned around", {400, 300, 100, 100}, first, first, {400, 300, 100, 100}}});
}

TEST(FittedRect, TooLargeForTheWorkAreaItStartsAtItsLeftOrTop) {
  expect_fitted({{"wider", {500, 100, 3000, 300}, first, first, {60, 100, 2560, 300}},
                 {"higher", {500, 100, 700, 3000}, first, first, {500, 30, 700, 2930}}});
}

TEST(FittedRect, GoesToTheSameOffsetUnderTheCursor) {
  expect_fitted({{"to the second", {100, 130, 400, 330}, first, second, {1320, 100, 1620, 300}},
                 {"back from the second", {1320, 100, 1620, 300}, second, first, {100, 130, 400, 330}},
                 {"to the left", {100, 130, 400, 330}, first, left_of_first, {-760, 200, -460, 400}},
                 {"pulled in before", {5000, 5000, 5300, 5200}, first, second, {2200, 794, 2500, 994}}});
}

TEST(FittedRect, StopsAtTheEndsOfTheRange) {
  expect_fitted(
      {{"the whole range", {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, first, first, {60, 30, INT_MAX, INT_MAX}},
       {"far right", {INT_MAX - 300, 0, INT_MAX, 200}, first, first, {980, 30, 1280, 230}},
       {"far left", {INT_MIN, INT_MIN, INT_MIN + 300, INT_MIN + 200}, first, first, {60, 30, 360, 230}},
       {"turned around", {INT_MAX, INT_MAX, INT_MIN, INT_MIN}, first, first, {INT_MAX, INT_MAX, INT_MIN, INT_MIN}}});
}

}  // namespace
}  // namespace resizable_test
