#include <gtest/gtest.h>

#include "GripFixture.h"

ZD_IMPORT_PROBE(CreateWindowExW, CreateWindowProbe);
ZD_IMPORT_PROBE(SetWindowRgn, SetRegionProbe);
ZD_IMPORT_PROBE(CreatePolygonRgn, CreatePolygonProbe);

namespace resizable_test {
namespace {

TEST_F(SizeGrip, IsAHiddenScrollBarOfTheSizeGripKind) {
  create();
  wchar_t name[32] = L"";
  GetClassNameW(grip.m_hWnd, name, 32);
  EXPECT_EQ(lstrcmpiW(name, L"ScrollBar"), 0);
  EXPECT_EQ(grip.GetStyle(), 0x44000010U);
  EXPECT_EQ(grip.GetExStyle() & ~DWORD{WS_EX_NOPARENTNOTIFY}, 0U);
  EXPECT_EQ(GetDlgCtrlID(grip.m_hWnd), 0);
  EXPECT_EQ(grip.GetText(), L"");
  EXPECT_EQ(GetParent(grip.m_hWnd), parent.get());
  EXPECT_EQ(GetClassLongPtrW(grip.m_hWnd, GCLP_HCURSOR), reinterpret_cast<ULONG_PTR>(LoadCursorW(nullptr, IDC_ARROW)));
}

TEST_F(SizeGrip, IsAsLargeAsTheSystemsScrollBars) {
  create();
  const CSize size(GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL));
  EXPECT_EQ(resizable::size_of(grip.GetWindowRect()), size);
  EXPECT_EQ(rect_of(grip.m_hWnd), (RECT{0, 0, size.cx, size.cy}));
}

TEST_F(SizeGrip, IsTriangularFromTheStart) {
  SetRegionProbe probe;
  probe.replace([&](HWND window, HRGN region, BOOL redraw) {
    EXPECT_EQ(redraw, FALSE);
    return probe.original(window, region, redraw);
  });
  create();
  EXPECT_EQ(probe.calls(), 1);
  EXPECT_TRUE(is_triangular());
}

TEST_F(SizeGrip, ThatCannotBeCreatedReturnsFalse) {
  CreateWindowProbe probe;
  probe.fail(0, nullptr);
  EXPECT_FALSE(grip.Create(parent.get()));
  EXPECT_EQ(grip.m_hWnd, nullptr);
}

TEST_F(SizeGrip, ASecondOneIsRefusedAndLeavesNoWindowBehind) {
  create();
  const HWND first = grip.m_hWnd;
  EXPECT_FALSE(grip.Create(parent.get()));
  EXPECT_EQ(grip.m_hWnd, first);
  EXPECT_EQ(GetWindow(parent.get(), GW_CHILD), first);
  EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), nullptr) << "the only child";
}

TEST_F(SizeGrip, IsWholeWhenItsTriangleCannotBeCreated) {
  CreatePolygonProbe probe;
  probe.fail(0, nullptr);
  create();
  grip.MakeTriangular(TRUE);
  region();
  EXPECT_EQ(region_kind, ERROR) << "no region at all";
}

TEST_F(SizeGrip, BecomesWholeAndTriangularAgain) {
  create();
  grip.MakeTriangular(FALSE);
  region();
  EXPECT_EQ(region_kind, ERROR) << "no region at all";
  grip.MakeTriangular(TRUE);
  EXPECT_TRUE(is_triangular());
}

TEST_F(SizeGrip, StaysAsItIsWhenItsRegionCannotBeChanged) {
  create();
  SetRegionProbe probe;
  probe.fail(0, FALSE);
  grip.MakeTriangular(FALSE);
  EXPECT_TRUE(is_triangular());
  EXPECT_TRUE(IsWindow(grip.m_hWnd));
}

TEST_F(SizeGrip, RedrawsForItsRegionOnlyWhenItIsVisible) {
  create();
  BOOL redrawn = -1;
  SetRegionProbe probe;
  probe.replace([&](HWND window, HRGN region, BOOL redraw) {
    redrawn = redraw;
    return probe.original(window, region, redraw);
  });
  grip.MakeTriangular(TRUE);
  EXPECT_EQ(redrawn, FALSE);
  ShowWindow(grip.m_hWnd, SW_SHOWNA);
  grip.MakeTriangular(TRUE);
  EXPECT_EQ(redrawn, TRUE);
  grip.MakeTriangular(FALSE);
  EXPECT_EQ(redrawn, TRUE);
}

TEST_F(SizeGrip, LetsClicksAboveItsDiagonalReachWhatLiesBehind) {
  const HWND behind = make_child(parent.get(), L"Edit", {0, 0, 50, 50});
  create();
  ShowWindow(grip.m_hWnd, SW_SHOWNA);
  BringWindowToTop(grip.m_hWnd);
  const CSize size = resizable::size_of(grip.GetWindowRect());
  EXPECT_EQ(ChildWindowFromPoint(parent.get(), {1, 1}), grip.m_hWnd) << "the rectangle covers it";
  POINT above{1, 1};
  POINT below{size.cx - 2, size.cy - 2};
  ClientToScreen(parent.get(), &above);
  ClientToScreen(parent.get(), &below);
  EXPECT_EQ(WindowFromPoint(above), behind);
  EXPECT_EQ(WindowFromPoint(below), grip.m_hWnd);
}

TEST_F(SizeGrip, NeverTakesTheFocus) {
  create();
  EXPECT_EQ(send(WM_GETDLGCODE), DLGC_STATIC);
  EXPECT_EQ(send(WM_SETFOCUS), 0);
}

TEST_F(SizeGrip, SwallowsTheFocusBeforeTheScrollBarSeesIt) {
  create();
  LRESULT result = 1;
  EXPECT_TRUE(grip.ProcessWindowMessage(grip.m_hWnd, WM_SETFOCUS, 0, 0, result));
  EXPECT_EQ(result, 0);
  EXPECT_FALSE(grip.ProcessWindowMessage(grip.m_hWnd, WM_KILLFOCUS, 0, 0, result))
      << "the original procedure gets other messages";
}

TEST_F(GripSize, FollowsTheSystemAndStaysInTheCorner) {
  create();
  grip.MakeTriangular(TRUE);
  place_in_corner();
  for (const CSize size : {CSize(31, 27), CSize(9, 11)}) {
    change_metrics(size.cx, size.cy);
    EXPECT_EQ(send(WM_SETTINGCHANGE), 0);
    EXPECT_EQ(rect_of(grip.m_hWnd), (RECT{300 - size.cx, 200 - size.cy, 300, 200}));
    EXPECT_TRUE(is_triangular());
  }
}

TEST_F(GripSize, KeepsAWholeGripWhole) {
  create();
  grip.MakeTriangular(FALSE);
  place_in_corner();
  change_metrics(31, 27);
  send(WM_SETTINGCHANGE);
  region();
  EXPECT_EQ(region_kind, ERROR);
}

}  // namespace
}  // namespace resizable_test
