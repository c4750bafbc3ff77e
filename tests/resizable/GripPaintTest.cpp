#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "DeviceContext.h"
#include "GripFixture.h"

ZD_IMPORT_PROBE(BeginPaint, BeginPaintProbe);
ZD_IMPORT_PROBE(BitBlt, BitBltProbe);
ZD_IMPORT_PROBE(SetWindowRgn, SetRegionProbe);
ZD_IMPORT_PROBE(CreateBitmap, CreateBitmapProbe);
ZD_IMPORT_PROBE(CreateCompatibleDC, CreateDcProbe);
ZD_IMPORT_PROBE(GetDC, GetDcProbe);
ZD_IMPORT_PROBE(CreateCompatibleBitmap, CreateCompatibleBitmapProbe);
ZD_IMPORT_PROBE(CreatePolygonRgn, CreatePolygonProbe);
ZD_IMPORT_PROBE(DeleteObject, DeleteObjectProbe);
ZD_IMPORT_PROBE(DeleteDC, DeleteDcProbe);
ZD_IMPORT_PROBE(SelectObject, SelectObjectProbe);

namespace resizable_test {
namespace {

/// A grip that paints with the dialog showing through.
class MaskedGrip : public GripSize {
 protected:
  static constexpr COLORREF behind = RGB(10, 200, 30);

  MaskedGrip() {
    grip.Create(parent.get());
    grip.EnableMaskedPaint(TRUE);
    ShowWindow(grip.m_hWnd, SW_SHOWNA);
  }

  /// Paints the grip by `message` over a plain colour; returns how many pixels show the colour and how many do not.
  std::array<int, 2> painted(UINT message, LPARAM flags = 0) {
    const base::ScopedClientDc screen(parent.get());
    const base::MemoryDc dc(CreateCompatibleDC(screen.get()));
    const SIZE size = grip.Size();
    const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), size.cx, size.cy));
    const base::ScopedSelectObject selected(dc.get(), bitmap.get());
    for (int x = 0; x < size.cx; ++x) {
      for (int y = 0; y < size.cy; ++y) SetPixel(dc.get(), x, y, behind);
    }
    SendMessageW(grip.m_hWnd, message, reinterpret_cast<WPARAM>(dc.get()), flags);
    std::array<int, 2> count{};
    for (int x = 0; x < size.cx; ++x) {
      for (int y = 0; y < size.cy; ++y) ++count[GetPixel(dc.get(), x, y) != behind];
    }
    return count;
  }

  int all_pixels() const { return grip.Size().cx * grip.Size().cy; }
};

TEST_F(MaskedGrip, LeavesOutTheColourOfItsTopLeftPixel) {
  const auto [through, drawn] = painted(WM_PAINT);
  EXPECT_GT(through, 0);
  EXPECT_GT(drawn, 0);
  grip.EnableMaskedPaint(FALSE);
  const auto [still_through, all_drawn] = painted(WM_PAINT);
  EXPECT_EQ(still_through, 0) << "the system's painting covers everything";
  EXPECT_EQ(all_drawn, all_pixels());
}

TEST_F(MaskedGrip, DrawsOverBlackWhatTheSystemDraws) {
  // Where the mask lets the picture through, the colours are the system's own.
  const base::ScopedClientDc screen(parent.get());
  const base::MemoryDc dc(CreateCompatibleDC(screen.get()));
  const base::MemoryDc plain(CreateCompatibleDC(screen.get()));
  const SIZE size = grip.Size();
  const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), size.cx, size.cy));
  const base::Bitmap plain_bitmap(CreateCompatibleBitmap(screen.get(), size.cx, size.cy));
  const base::ScopedSelectObject selected(dc.get(), bitmap.get());
  const base::ScopedSelectObject plain_selected(plain.get(), plain_bitmap.get());
  send(WM_PAINT, reinterpret_cast<WPARAM>(dc.get()));
  grip.EnableMaskedPaint(FALSE);
  send(WM_PAINT, reinterpret_cast<WPARAM>(plain.get()));
  const COLORREF key = GetPixel(plain.get(), 0, 0);
  for (int x = 0; x < size.cx; ++x) {
    for (int y = 0; y < size.cy; ++y) {
      const COLORREF drawn = GetPixel(plain.get(), x, y);
      ASSERT_EQ(GetPixel(dc.get(), x, y), drawn == key ? RGB(0, 0, 0) : drawn) << x << ", " << y;
    }
  }
}

TEST_F(MaskedGrip, SelectsTheOldBitmapsIntoItsDcsAgain) {
  struct Selection {
    HDC dc;
    HGDIOBJ object;
    HGDIOBJ previous;
  };
  std::vector<Selection> selections;
  SelectObjectProbe probe;
  probe.replace([&](HDC dc, HGDIOBJ object) {
    const HGDIOBJ previous = probe.original(dc, object);
    selections.push_back({dc, object, previous});
    return previous;
  });
  const base::ScopedClientDc screen(grip.m_hWnd);
  send(WM_PAINT, reinterpret_cast<WPARAM>(screen.get()));
  ASSERT_EQ(selections.size(), 4U);
  for (int first = 0; first < 2; ++first) {
    const Selection& taken = selections[first];
    const Selection& back = selections[3 - first];
    EXPECT_EQ(back.dc, taken.dc);
    EXPECT_EQ(back.object, taken.previous);
    EXPECT_EQ(back.previous, taken.object);
  }
  EXPECT_NE(selections[0].dc, selections[1].dc);
}

TEST_F(MaskedGrip, PaintsWhatIsInvalid) {
  InvalidateRect(grip.m_hWnd, nullptr, FALSE);
  EXPECT_EQ(send(WM_PAINT), 0);
  RECT invalid{};
  EXPECT_FALSE(GetUpdateRect(grip.m_hWnd, &invalid, FALSE));
}

TEST_F(MaskedGrip, PrintsWhenVisible) { EXPECT_GT(painted(WM_PRINTCLIENT)[1], 0); }

// The calls are counted because not every system draws a hidden scroll bar.
TEST_F(MaskedGrip, PrintsHiddenOnlyWithTheCheckVisibleFlag) {
  ShowWindow(grip.m_hWnd, SW_HIDE);
  BitBltProbe copies;
  EXPECT_EQ(painted(WM_PRINTCLIENT, PRF_CLIENT)[1], 0);
  EXPECT_EQ(copies.calls(), 0);
  painted(WM_PRINTCLIENT, PRF_CLIENT | PRF_CHECKVISIBLE);
  EXPECT_EQ(copies.calls(), 4);
}

TEST_F(MaskedGrip, IsMaskedInItsNewSizeToo) {
  change_metrics(31, 27);
  send(WM_SETTINGCHANGE);
  const auto [through, drawn] = painted(WM_PAINT);
  EXPECT_EQ(through + drawn, 31 * 27);
  EXPECT_GT(through, 0);
  EXPECT_GT(drawn, 0);
}

/// Enables masked painting while a system call of its preparation returns nothing.
template <class Probe>
void enable_without(CSizeGrip& grip) {
  Probe probe;
  probe.fail(0, nullptr);
  grip.EnableMaskedPaint(TRUE);
}

TEST_F(MaskedGrip, PaintsAsTheSystemWhenItsBitmapsCannotBeCreated) {
  for (const auto enable : {enable_without<CreateBitmapProbe>, enable_without<CreateCompatibleBitmapProbe>,
                            enable_without<CreateDcProbe>, enable_without<GetDcProbe>}) {
    enable(grip);
    EXPECT_EQ(painted(WM_PAINT)[0], 0);
  }
  grip.EnableMaskedPaint(TRUE);
  EXPECT_GT(painted(WM_PAINT)[0], 0);
}

TEST_F(MaskedGrip, DrawsNothingWithoutADcToPaintOn) {
  InvalidateRect(grip.m_hWnd, nullptr, FALSE);
  BeginPaintProbe no_dc;
  no_dc.fail(0, nullptr);
  BitBltProbe copies;
  EXPECT_EQ(send(WM_PAINT), 0);
  EXPECT_EQ(copies.calls(), 0);
}

TEST_F(MaskedGrip, DrawsNothingWhenCopyingFails) {
  for (const int number : {0, 1, 2, 3, 4}) {
    BitBltProbe copies;
    copies.fail(number, FALSE);
    const auto [through, drawn] = painted(WM_PAINT);
    EXPECT_EQ(through + drawn, all_pixels());
    EXPECT_TRUE(number != 0 || drawn == 0);
  }
  EXPECT_GT(painted(WM_PAINT)[0], 0) << "and the next painting is whole again";
}

TEST_F(MaskedGrip, DrawsNothingWhenItsBitmapsCannotBeSelected) {
  for (const int number : {1, 2}) {
    SelectObjectProbe selections;
    selections.replace([&](HDC dc, HGDIOBJ object) -> HGDIOBJ {
      // The test selects its own bitmap first.
      return selections.calls() == number + 1 ? nullptr : selections.original(dc, object);
    });
    EXPECT_EQ(painted(WM_PAINT)[1], 0) << number;
  }
  EXPECT_GT(painted(WM_PAINT)[1], 0);
}

/// Counts every GDI object that the grip creates.
class GripObjects : public SizeGrip {
 protected:
  int created() const { return dcs.calls() + masks.calls() + bitmaps.calls() + regions.calls(); }
  int deleted() const { return deleted_objects.calls() + deleted_dcs.calls(); }

  CreateDcProbe dcs;
  CreateBitmapProbe masks;
  CreateCompatibleBitmapProbe bitmaps;
  CreatePolygonProbe regions;
  DeleteObjectProbe deleted_objects;
  DeleteDcProbe deleted_dcs;
};

TEST_F(GripObjects, GoWithTheWindow) {
  create();
  ASSERT_EQ(regions.calls(), 1);
  grip.EnableMaskedPaint(TRUE);
  EXPECT_EQ(created() - regions.calls(), 4);
  DestroyWindow(grip.m_hWnd);
  EXPECT_EQ(deleted(), 4) << "the system has the region";
  EXPECT_EQ(grip.m_hWnd, nullptr);
}

TEST_F(GripObjects, GoWhenMaskedPaintingEndsAndWhenItIsEnabledAgain) {
  create();
  for (int i = 0; i < 3; ++i) grip.EnableMaskedPaint(TRUE);
  grip.EnableMaskedPaint(FALSE);
  grip.EnableMaskedPaint(FALSE);
  EXPECT_EQ(deleted(), created() - regions.calls());
}

TEST_F(GripObjects, ARegionThatTheWindowDoesNotTakeIsDeleted) {
  create();
  SetRegionProbe probe;
  probe.fail(0, FALSE);
  grip.MakeTriangular(TRUE);
  EXPECT_EQ(deleted_objects.calls(), 1);
}

}  // namespace
}  // namespace resizable_test
