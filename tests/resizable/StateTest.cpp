#include <gtest/gtest.h>

#include <climits>

#include "ImportProbe.h"
#include "ResizableState.h"
#include "StateFixture.h"

ZD_IMPORT_PROBE(SetWindowPos, SetPositionProbe);
ZD_IMPORT_PROBE(SetWindowPlacement, SetPlacementProbe);
ZD_IMPORT_PROBE(GetWindowPlacement, GetPlacementProbe);
ZD_IMPORT_PROBE(MonitorFromRect, MonitorFromRectProbe);
ZD_IMPORT_PROBE(MonitorFromPoint, MonitorFromPointProbe);
ZD_IMPORT_PROBE(GetMonitorInfoW, MonitorInfoProbe);

namespace resizable_test {
namespace {

class StoredPlacement : public PlacementTest {};

TEST_F(StoredPlacement, IsTheSystemsRecordWithALoweredBottom) {
  WINDOWPLACEMENT expected = present();
  expected.rcNormalPosition.bottom -= caption;
  ASSERT_TRUE(store());
  const auto bytes = stored_bytes();
  ASSERT_EQ(bytes.size(), 44U);
  EXPECT_EQ(memcmp(bytes.data(), &expected, 44), 0);
}

TEST_F(StoredPlacement, LowersTheGivenRecordInPlace) {
  WINDOWPLACEMENT given = placement_at({10, 20, 310, 420}, SW_SHOWMAXIMIZED);
  ASSERT_TRUE(store(FALSE, &given));
  EXPECT_EQ(given.rcNormalPosition, (RECT{10, 20, 310, 420 - caption}));
  EXPECT_EQ(memcmp(stored_bytes().data(), &given, 44), 0);
}

TEST_F(StoredPlacement, OfAMinimisedDialogIsShown) {
  ShowWindow(owned.get(), SW_SHOWNOACTIVATE);
  ShowWindow(owned.get(), SW_SHOWMINNOACTIVE);
  ASSERT_TRUE(IsIconic(owned.get()));
  ASSERT_TRUE(store());
  EXPECT_EQ(stored()->showCmd, UINT{SW_SHOW});
}

TEST_F(StoredPlacement, OfADialogThatWasMinimisedFromMaximisedIsMaximised) {
  ShowWindow(owned.get(), SW_SHOWMAXIMIZED);
  ShowWindow(owned.get(), SW_MINIMIZE);
  ASSERT_TRUE(IsIconic(owned.get()));
  ASSERT_TRUE(store());
  EXPECT_EQ(stored()->showCmd, UINT{SW_SHOWMAXIMIZED});
}

TEST_F(StoredPlacement, WithTheRectangleOnlyIsNormalAtThePresentRectangle) {
  ShowWindow(owned.get(), SW_SHOWMAXIMIZED);
  const RECT maximised = rect();
  ASSERT_TRUE(store(TRUE));
  EXPECT_EQ(stored()->showCmd, UINT{SW_SHOWNORMAL});
  EXPECT_EQ(stored()->rcNormalPosition,
            (RECT{maximised.left, maximised.top, maximised.right, maximised.bottom - caption}));
}

TEST_F(StoredPlacement, GoesWhereItWasRestoredFrom) {
  restore();
  resize(owned.get(), 400, 350);
  ASSERT_TRUE(window.StorePlacement(FALSE));
  EXPECT_EQ(stored()->rcNormalPosition.right, 500);
  EXPECT_EQ(stored()->rcNormalPosition.bottom, 450 - caption);
}

TEST_F(StoredPlacement, OfADestroyedWindowIsNotStored) {
  owned.destroy();
  EXPECT_FALSE(store());
  EXPECT_TRUE(stored_bytes().empty());
}

TEST_F(StoredPlacement, OfADialogThatWasNeverRestoredIsNotStored) { EXPECT_FALSE(window.StorePlacement(FALSE)); }

class FirstOpening : public PlacementTest {};

TEST_F(FirstOpening, StoresThePlacementAndOpensOneCaptionShorter) {
  WINDOWPLACEMENT expected = present();
  expected.rcNormalPosition.bottom -= caption;
  EXPECT_EQ(restore(), FALSE);
  EXPECT_EQ(memcmp(stored_bytes().data(), &expected, 44), 0);
  EXPECT_EQ(rect(), (RECT{100, 100, 400, 300 - caption}));
  EXPECT_TRUE(IsWindowVisible(owned.get()));
}

TEST_F(FirstOpening, SetsTheLoweredRectangleWithItsFlags) {
  std::vector<UINT> flags;
  SetPositionProbe probe;
  probe.replace([&](HWND dialog, HWND after, int x, int y, int cx, int cy, UINT given) {
    flags.push_back(given);
    return probe.original(dialog, after, x, y, cx, cy, given);
  });
  restore();
  EXPECT_EQ(flags, std::vector<UINT>{0x214});
}

TEST_F(FirstOpening, KeepsTheSizeOfADialogWithAModalFrame) {
  SetWindowLongPtrW(owned.get(), GWL_STYLE, style | DS_MODALFRAME);
  UINT flags = 0;
  SetPositionProbe probe;
  probe.replace([&](HWND dialog, HWND after, int x, int y, int cx, int cy, UINT given) {
    flags = given;
    return probe.original(dialog, after, x, y, cx, cy, given);
  });
  restore();
  EXPECT_EQ(flags, 0x215U);
  EXPECT_EQ(rect(), (RECT{100, 100, 400, 300}));
}

TEST_F(FirstOpening, ChangesNothingWhenTheSystemDoesNotReturnThePlacement) {
  GetPlacementProbe probe;
  probe.fail(0, FALSE);
  EXPECT_EQ(restore(), FALSE);
  EXPECT_EQ(rect(), (RECT{100, 100, 400, 300}));
  EXPECT_TRUE(stored_bytes().empty());
}

class RestoredPlacement : public PlacementTest {};

TEST_F(RestoredPlacement, IsOneCaptionHigherThanItWasStored) {
  write(placement_at({150, 160, 550, 460 - caption}));
  EXPECT_NE(restore(), FALSE);
  EXPECT_EQ(rect(), (RECT{150, 160, 550, 460}));
  EXPECT_TRUE(IsWindowVisible(owned.get()));
}

TEST_F(RestoredPlacement, LeavesTheStoredValueAsItIs) {
  const WINDOWPLACEMENT placement = placement_at({150, 160, 550, 460});
  write(placement);
  restore();
  EXPECT_EQ(memcmp(stored_bytes().data(), &placement, 44), 0);
}

TEST_F(RestoredPlacement, PassesTheStoredShowCommandOn) {
  for (const UINT show : {SW_SHOWMAXIMIZED, SW_SHOW, SW_SHOWNORMAL, SW_SHOWNOACTIVATE}) {
    write(placement_at({150, 160, 550, 460}, show));
    UINT given = 999;
    SetPlacementProbe probe;
    probe.replace([&](HWND, const WINDOWPLACEMENT* placement) { return given = placement->showCmd, TRUE; });
    EXPECT_EQ(restore(), TRUE);
    EXPECT_EQ(given, show);
  }
}

TEST_F(RestoredPlacement, ReturnsTheResultOfTheSystem) {
  write(placement_at({150, 160, 550, 460}));
  SetPlacementProbe probe;
  probe.fail(0, FALSE);
  EXPECT_EQ(restore(), FALSE);
}

TEST_F(RestoredPlacement, OfAMaximisedDialogMaximises) {
  write(placement_at({150, 160, 550, 460 - caption}, SW_SHOWMAXIMIZED));
  restore();
  EXPECT_TRUE(IsZoomed(owned.get()));
  EXPECT_EQ(present().rcNormalPosition, (RECT{150, 160, 550, 460}));
}

TEST_F(RestoredPlacement, IgnoresTheRecordsOwnLength) {
  for (const UINT length : {0U, 4U, 43U, 45U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    WINDOWPLACEMENT hostile = placement_at({150, 160, 550, 460 - caption});
    hostile.length = length;
    write(hostile);
    UINT given = 0;
    SetPlacementProbe probe;
    probe.replace([&](HWND dialog, const WINDOWPLACEMENT* placement) {
      return given = placement->length, probe.original(dialog, placement);
    });
    EXPECT_NE(restore(), FALSE) << length;
    EXPECT_EQ(given, 44U);
    EXPECT_EQ(rect(), (RECT{150, 160, 550, 460}));
    MoveWindow(owned.get(), 0, 0, 300, 200, FALSE);
  }
}

TEST_F(RestoredPlacement, OffEveryMonitorIsPulledIn) {
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  write(placement_at({-30000, 30000, -29600, 30300 - caption}));
  restore();
  EXPECT_EQ(rect(), (RECT{work.left, work.bottom - 300, work.left + 400, work.bottom}));
}

TEST_F(RestoredPlacement, WithAbsurdCoordinatesStaysOnTheScreen) {
  const RECT absurd[] = {{INT_MIN, INT_MIN, INT_MAX, INT_MAX},
                         {INT_MAX, INT_MAX, INT_MIN, INT_MIN},
                         {INT_MAX - 1, INT_MAX - 1, INT_MAX, INT_MAX},
                         {INT_MIN, INT_MIN, INT_MIN, INT_MIN},
                         {0, 0, 0, 0},
                         {500, 500, 100, 100}};
  for (const RECT& stored_rect : absurd) {
    write(placement_at(stored_rect));
    restore();
    EXPECT_NE(MonitorFromWindow(owned.get(), MONITOR_DEFAULTTONULL), nullptr) << testing::PrintToString(stored_rect);
    EXPECT_GE(rect().left, 0);
    EXPECT_GE(rect().top, 0);
  }
}

struct AbsentCase {
  const char* name;
  DWORD type;
  DWORD size;
};

constexpr AbsentCase absent_cases[] = {
    {"text", REG_SZ, 44},       {"a number", REG_DWORD, 4},  {"no type", REG_NONE, 44},
    {"longer", REG_BINARY, 45}, {"shorter", REG_BINARY, 43}, {"much longer", REG_BINARY, 5000},
    {"empty", REG_BINARY, 0},
};

TEST_F(FirstOpening, IsWhenTheValueHasAnotherTypeOrSize) {
  for (const auto& [name, type, size] : absent_cases) {
    MoveWindow(owned.get(), 100, 100, 300, 200, FALSE);
    const std::vector<BYTE> bytes(size, 0x11);
    write(type, bytes.data(), size);
    EXPECT_EQ(restore(), FALSE) << name;
    EXPECT_EQ(rect(), (RECT{100, 100, 400, 300 - caption})) << name << ": nothing of the value is used";
    ASSERT_TRUE(stored()) << name << ": a proper value takes its place";
    EXPECT_EQ(stored()->rcNormalPosition, (RECT{100, 100, 400, 300 - caption})) << name;
  }
}

/// Two monitors, the second to the right of the first, with a bar on top of each.
class TwoMonitors : public testing::Test {
 protected:
  TwoMonitors() {
    from_rect.replace([this](const RECT* rect, DWORD flags) {
      EXPECT_EQ(flags, DWORD{MONITOR_DEFAULTTONEAREST});
      return rect->left < 1000 ? first : second;
    });
    from_point.replace([this](POINT, DWORD flags) {
      EXPECT_EQ(flags, DWORD{MONITOR_DEFAULTTONEAREST});
      return under_cursor;
    });
    info.replace([this](HMONITOR monitor, MONITORINFO* out) {
      EXPECT_EQ(out->cbSize, 40U);
      out->rcWork = monitor == first ? RECT{0, 30, 1000, 800} : RECT{1000, 50, 2000, 700};
      return TRUE;
    });
  }

  static HMONITOR monitor(int number) { return reinterpret_cast<HMONITOR>(static_cast<INT_PTR>(number)); }

  const HMONITOR first = monitor(1);
  const HMONITOR second = monitor(2);
  HMONITOR under_cursor = second;
  MonitorFromRectProbe from_rect;
  MonitorFromPointProbe from_point;
  MonitorInfoProbe info;
};

TEST_F(TwoMonitors, TheRectangleGoesToTheOneUnderTheCursor) {
  RECT rect{100, 130, 400, 330};
  StateWindow::FitRectToMonitor(rect);
  EXPECT_EQ(rect, (RECT{1100, 150, 1400, 350}));
  under_cursor = first;
  StateWindow::FitRectToMonitor(rect);
  EXPECT_EQ(rect, (RECT{100, 130, 400, 330}));
}

TEST_F(TwoMonitors, TheRectangleIsPulledInBeforeItGoes) {
  RECT rect{-500, 0, -200, 200};
  StateWindow::FitRectToMonitor(rect);
  EXPECT_EQ(rect, (RECT{1000, 50, 1300, 250}));
}

TEST_F(TwoMonitors, WithoutMonitorInformationTheMainWorkAreaServes) {
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  info.fail(0, FALSE);
  RECT rect{work.right, work.bottom, work.right + 300, work.bottom + 200};
  StateWindow::FitRectToMonitor(rect);
  EXPECT_EQ(rect, (RECT{work.right - 300, work.bottom - 200, work.right, work.bottom}));
}

}  // namespace
}  // namespace resizable_test
