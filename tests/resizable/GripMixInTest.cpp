#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "ImportProbe.h"
#include "ResizableGrip.h"
#include "TestWindows.h"

ZD_IMPORT_PROBE(SetWindowPos, SetPositionProbe);

namespace resizable_test {
namespace {

/// The mix-in on a window: when the grip is shown, and where.
class GripWindow : public platform::CWindow, public CResizableGrip<GripWindow> {};

class GripMixIn : public testing::Test {
 protected:
  GripMixIn() {
    window.Attach(parent.get());
    ShowWindow(parent.get(), SW_SHOWNOACTIVATE);
    EXPECT_TRUE(window.SizeGrip().Create(parent.get()));
  }

  HWND grip() { return window.SizeGrip().m_hWnd; }

  OwnedWindow parent{make_popup()};
  GripWindow window;
  DWORD status = 0;
};

TEST_F(GripMixIn, CountsTheSameBitsOnce) {
  EXPECT_EQ(window.ShowCount(), 0);
  window.ShowSizeGrip(&status, 1);
  window.ShowSizeGrip(&status, 1);
  EXPECT_EQ(window.ShowCount(), 1);
  EXPECT_EQ(status, 1U);
  window.ShowSizeGrip(&status, 2);
  EXPECT_EQ(window.ShowCount(), 2);
  EXPECT_EQ(status, 3U);
  window.HideSizeGrip(&status, 1);
  window.HideSizeGrip(&status, 1);
  EXPECT_EQ(window.ShowCount(), 1);
  EXPECT_EQ(status, 2U);
}

TEST_F(GripMixIn, ShowsTheGripInTheCornerBehindEveryControl) {
  const HWND control = make_child(parent.get(), L"Edit", {0, 0, 50, 50});
  window.SetShowCount(1);
  window.UpdateSizeGrip();
  const SIZE size = window.SizeGrip().Size();
  EXPECT_EQ(rect_of(grip()), (RECT{300 - size.cx, 200 - size.cy, 300, 200}));
  EXPECT_TRUE(IsWindowVisible(grip()));
  EXPECT_EQ(GetWindow(control, GW_HWNDNEXT), grip());
  EXPECT_EQ(GetWindow(grip(), GW_HWNDNEXT), nullptr);
}

TEST_F(GripMixIn, NamesHowTheGripIsPlaced) {
  std::vector<std::pair<HWND, UINT>> placed;
  SetPositionProbe probe;
  probe.replace([&](HWND moved, HWND after, int x, int y, int cx, int cy, UINT flags) {
    if (moved == grip()) placed.emplace_back(after, flags);
    return probe.original(moved, after, x, y, cx, cy, flags);
  });
  for (const int count : {1, 2, 0, -1}) {
    window.SetShowCount(count);
    window.UpdateSizeGrip();
  }
  using Placed = std::pair<HWND, UINT>;
  EXPECT_THAT(placed, testing::ElementsAre(Placed(HWND_BOTTOM, 0x251), Placed(HWND_BOTTOM, 0x251),
                                           Placed(HWND_BOTTOM, 0x291), Placed(HWND_BOTTOM, 0x291)));
}

TEST_F(GripMixIn, HidesTheGripWhenItIsNotWanted) {
  window.SetShowCount(1);
  window.UpdateSizeGrip();
  window.SetShowCount(0);
  resize(parent.get(), 400, 300);
  window.UpdateSizeGrip();
  EXPECT_FALSE(IsWindowVisible(grip()));
  EXPECT_EQ(rect_of(grip()).right, 400) << "it is kept in the corner all the same";
}

TEST_F(GripMixIn, HasNothingToPlaceWithoutAGrip) {
  GripWindow bare;
  bare.Attach(parent.get());
  bare.SetShowCount(1);
  bare.UpdateSizeGrip();
  EXPECT_EQ(bare.SizeGrip().m_hWnd, nullptr);
  DestroyWindow(grip());
  window.UpdateSizeGrip();
  EXPECT_EQ(grip(), nullptr);
}

}  // namespace
}  // namespace resizable_test
