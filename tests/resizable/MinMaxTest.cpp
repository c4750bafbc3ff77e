#include <gtest/gtest.h>

#include <cstring>

#include "PrintGeometry.h"
#include "ResizableMinMax.h"

namespace resizable_test {
namespace {

class LimitedWindow : public CResizableMinMax<LimitedWindow> {};

class MinMax : public testing::Test {
 protected:
  static bool same(const MINMAXINFO& left, const MINMAXINFO& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
  }

  LimitedWindow window;
  MINMAXINFO info{{90, 91}, {92, 93}, {94, 95}, {96, 97}, {98, 99}};
};

TEST_F(MinMax, LeavesWhatTheSystemFilledUntilALimitIsSet) {
  const MINMAXINFO before = info;
  window.FillMinMaxInfo(info);
  EXPECT_TRUE(same(info, before));
}

TEST_F(MinMax, SetsTheSmallestSizeOnly) {
  window.SetMinTrackingSize({10, 20});
  window.FillMinMaxInfo(info);
  EXPECT_TRUE(same(info, {{90, 91}, {92, 93}, {94, 95}, {10, 20}, {98, 99}}));
  EXPECT_EQ(window.MinTrackingSize(), CSize(10, 20));
}

TEST_F(MinMax, SetsTheLargestSizeOnly) {
  window.SetMaxTrackingSize({1000, 2000});
  window.FillMinMaxInfo(info);
  EXPECT_TRUE(same(info, {{90, 91}, {92, 93}, {94, 95}, {96, 97}, {1000, 2000}}));
}

TEST_F(MinMax, SetsTheMaximisedRectangleOnly) {
  window.SetMaximizedRect({-5, 6, 95, 206});
  window.FillMinMaxInfo(info);
  EXPECT_TRUE(same(info, {{90, 91}, {100, 200}, {-5, 6}, {96, 97}, {98, 99}}));
}

class MeasuringWindow : public CResizableMinMax<MeasuringWindow> {
 public:
  BOOL CalcSizeExtra(HWND, CSize normal, CSize wanted, CSize& extra) override {
    extra = {wanted.cx - normal.cx, wanted.cy - normal.cy};
    return TRUE;
  }
};

TEST(ExtraSize, IsCalculatedByTheDerivedClass) {
  MeasuringWindow window;
  CResizableMinMax<MeasuringWindow>& base = window;
  CSize extra;
  EXPECT_EQ(base.CalcSizeExtra(nullptr, {10, 20}, {13, 25}, extra), TRUE);
  EXPECT_EQ(extra, CSize(3, 5));
}

}  // namespace
}  // namespace resizable_test
