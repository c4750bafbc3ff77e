// How the dialog frame handles its messages, and what it leaves to the dialog.

#include <gmock/gmock.h>

#include <optional>

#include "DeviceContext.h"
#include "ExpectedReports.h"
#include "ImportProbe.h"
#include "TestDialog.h"

ZD_IMPORT_PROBE(ExtSelectClipRgn, SelectClipProbe);
ZD_IMPORT_PROBE(GetSystemMetrics, MetricsProbe);

namespace resizable_test {
namespace {

using test_support::take_reports;

class DialogMessages : public DialogFixture<IDD_SIZING_BORDER> {
 protected:
  void open_shown() {
    open();
    ShowWindow(dialog.m_hWnd, SW_SHOWNOACTIVATE);
    UpdateWindow(dialog.m_hWnd);
  }

  /// Moves a child elsewhere, so that a test sees whether it is laid out again.
  void displace() { MoveWindow(dialog.item(IDC_ADD), 0, 0, 5, 5, FALSE); }
  bool displaced() { return rect_of(dialog.item(IDC_ADD)) == RECT{0, 0, 5, 5}; }
};

TEST_F(DialogMessages, AnotherMessageMapIsReportedAndLeftUnhandled) {
  result = 77;
  EXPECT_FALSE(dialog.ProcessWindowMessage(nullptr, WM_GETMINMAXINFO, 0, 0, result, 1));
  EXPECT_THAT(take_reports(), testing::ElementsAre("ASSERT 0 | ResizableDialog.h:48 ProcessWindowMessage"));
  EXPECT_EQ(result, 77);
}

TEST_F(DialogMessages, OthersAreTheDialogs) {
  open();
  for (const UINT message : {UINT{WM_COMMAND}, UINT{WM_NOTIFY}, UINT{WM_CLOSE}, UINT{WM_WINDOWPOSCHANGING},
                             UINT{WM_CTLCOLORDLG}, UINT{WM_APP}, UINT{WM_SETTINGCHANGE}}) {
    EXPECT_FALSE(handles(message)) << message;
  }
}

TEST_F(DialogMessages, SizeIsLaidOutAndStaysTheDialogsToo) {
  open();
  displace();
  EXPECT_FALSE(handles(WM_SIZE, SIZE_RESTORED));
  EXPECT_FALSE(displaced());
}

TEST_F(DialogMessages, SizesOfOtherWindowsMoveNothing) {
  open();
  // A count that would rise and a grip that would go back to its corner.
  send(WM_SIZE, SIZE_MAXIMIZED);
  SetWindowPos(dialog.grip(), nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  const RECT grip = rect_of(dialog.grip());
  ASSERT_EQ(grip.left, 0);
  displace();
  for (const WPARAM type : {SIZE_MAXHIDE, SIZE_MAXSHOW}) {
    EXPECT_FALSE(handles(WM_SIZE, type));
    EXPECT_TRUE(displaced());
    EXPECT_EQ(rect_of(dialog.grip()), grip);
    EXPECT_EQ(dialog.ShowCount(), 0);
  }
}

TEST_F(DialogMessages, MaximisingHidesTheGripAndRestoringShowsIt) {
  open_shown();
  for (int round = 0; round < 2; ++round) {
    send(WM_SIZE, SIZE_MAXIMIZED);
    send(WM_SIZE, SIZE_MAXIMIZED);
    EXPECT_EQ(dialog.ShowCount(), 0);
    EXPECT_FALSE(IsWindowVisible(dialog.grip()));
    send(WM_SIZE, SIZE_RESTORED);
    EXPECT_EQ(dialog.ShowCount(), 1);
    EXPECT_TRUE(IsWindowVisible(dialog.grip()));
  }
}

TEST_F(DialogMessages, MinimisingAndRestoringLeavesTheCountAtOne) {
  open_shown();
  for (int round = 0; round < 2; ++round) {
    send(WM_SIZE, SIZE_MINIMIZED);
    send(WM_SIZE, SIZE_RESTORED);
    EXPECT_EQ(dialog.ShowCount(), 1);
  }
}

TEST_F(DialogMessages, AMaximisedWindowHasNoGripAndARestoredOneHas) {
  open_shown();
  ShowWindow(dialog.m_hWnd, SW_MAXIMIZE);
  EXPECT_FALSE(IsWindowVisible(dialog.grip()));
  ShowWindow(dialog.m_hWnd, SW_RESTORE);
  EXPECT_TRUE(IsWindowVisible(dialog.grip()));
  EXPECT_EQ(rect_of(dialog.grip()).right, client_size(dialog.m_hWnd).cx);
}

TEST_F(DialogMessages, MinMaxInfoIsHandledWithTheTemplatesSize) {
  open();
  MINMAXINFO info{{90, 91}, {92, 93}, {94, 95}, {96, 97}, {98, 99}};
  result = 77;
  EXPECT_TRUE(handles(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info)));
  EXPECT_EQ(result, 0);
  const MINMAXINFO expected{{90, 91}, {92, 93}, {94, 95}, {size().cx, size().cy}, {98, 99}};
  EXPECT_EQ(memcmp(&info, &expected, sizeof info), 0);
}

TEST_F(DialogMessages, MinMaxInfoStaysTheSystemsBeforeTheInitialisation) {
  MINMAXINFO info{{90, 91}, {92, 93}, {94, 95}, {96, 97}, {98, 99}};
  const MINMAXINFO before = info;
  EXPECT_TRUE(handles(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info)));
  EXPECT_EQ(memcmp(&info, &before, sizeof info), 0);
}

TEST_F(DialogMessages, DraggingInwardStopsAtTheTemplatesSize) {
  open_shown();
  const CSize smallest = size();
  resize(dialog.m_hWnd, smallest.cx + 50, smallest.cy + 50);
  resize(dialog.m_hWnd, smallest.cx - 80, smallest.cy - 60);
  EXPECT_EQ(size(), smallest);
}

TEST_F(DialogMessages, MaximisingIsNotLimited) {
  open_shown();
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  ASSERT_TRUE(GetMonitorInfoW(MonitorFromWindow(dialog.m_hWnd, MONITOR_DEFAULTTONEAREST), &monitor));
  ShowWindow(dialog.m_hWnd, SW_MAXIMIZE);
  const RECT maximised = rect();
  EXPECT_LE(maximised.left, monitor.rcWork.left);
  EXPECT_GE(maximised.right, monitor.rcWork.right);
  EXPECT_GE(maximised.bottom, monitor.rcWork.bottom);
}

TEST_F(DialogMessages, LargestAndMaximisedSizesAreReturnedWhenTheyAreSet) {
  open();
  dialog.SetMaxTrackingSize({500, 400});
  dialog.SetMaximizedRect({10, 20, 410, 320});
  MINMAXINFO info{};
  send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_EQ(info.ptMaxTrackSize.x, 500);
  EXPECT_EQ(info.ptMaxTrackSize.y, 400);
  EXPECT_EQ(info.ptMaxPosition.x, 10);
  EXPECT_EQ(info.ptMaxSize.y, 300);
  resize(dialog.m_hWnd, 900, 900);
  EXPECT_EQ(size(), CSize(500, 400));
}

TEST_F(DialogMessages, DestroyingClearsTheAnchorsAndStaysTheDialogsToo) {
  open();
  std::size_t anchored = 77;
  dialog.on_message = [&](UINT message, WPARAM, LPARAM, LRESULT&) {
    if (message == WM_DESTROY) anchored = dialog.Anchored().size();
    return FALSE;
  };
  destroy();
  EXPECT_EQ(anchored, 0U);
}

TEST_F(DialogMessages, FrameCalculationKeepsTheValidPartAndStaysTheDialogsToo) {
  open();
  WINDOWPOS position{};
  NCCALCSIZE_PARAMS params{};
  params.rgrc[0] = {0, 0, 200, 100};
  params.rgrc[2] = {50, 60, 300, 400};
  params.lppos = &position;
  EXPECT_FALSE(handles(WM_NCCALCSIZE, TRUE, reinterpret_cast<LPARAM>(&params)));
  EXPECT_EQ(params.rgrc[1], (RECT{50, 60, 200, 100}));
  EXPECT_EQ(params.rgrc[2], (RECT{50, 60, 200, 100}));
  EXPECT_EQ(result, WVR_VALIDRECTS);
}

TEST_F(DialogMessages, FrameCalculationOfARectangleIsLeftAlone) {
  open();
  RECT window{0, 0, 200, 100};
  EXPECT_FALSE(handles(WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&window)));
  EXPECT_EQ(window, (RECT{0, 0, 200, 100}));
  EXPECT_FALSE(handles(WM_NCCALCSIZE, TRUE, 0)) << "and nothing happens without parameters";
}

TEST_F(DialogMessages, FrameCalculationLeavesTheRightClientArea) {
  open_shown();
  resize(dialog.m_hWnd, size().cx + 60, size().cy + 50);
  RECT window{0, 0, client_size(dialog.m_hWnd).cx, client_size(dialog.m_hWnd).cy};
  AdjustWindowRectEx(&window, dialog.GetStyle(), FALSE, dialog.GetExStyle());
  EXPECT_EQ(resizable::size_of(window), size());
}

TEST_F(DialogMessages, SettingChangeReachesTheGrip) {
  open_shown();
  ASSERT_TRUE(is_cut_to_triangle(dialog.grip()));
  MetricsProbe metrics;
  metrics.replace([&](int index) { return index == SM_CXVSCROLL ? 33 : metrics.original(index); });
  send(WM_SETTINGCHANGE);
  EXPECT_EQ(dialog.SizeGrip().Size().cx, 33);
  EXPECT_EQ(rect_of(dialog.grip()).right - rect_of(dialog.grip()).left, 33);
  EXPECT_EQ(rect_of(dialog.grip()).right, client_size(dialog.m_hWnd).cx);
  EXPECT_TRUE(is_cut_to_triangle(dialog.grip())) << "cut to its new size";
}

class Erasing : public DialogMessages {
 protected:
  Erasing() {
    open_shown();
    clipped.emplace();
  }

  /// An erase as the base sees it, without the erasing itself.
  BOOL erase(HDC dc) { return handles(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc)); }

  std::optional<SelectClipProbe> clipped;
};

TEST_F(Erasing, IsClippedAndLeftToTheSystem) {
  const base::ScopedClientDc dc(dialog.m_hWnd);
  EXPECT_FALSE(erase(dc.get()));
  EXPECT_EQ(clipped->calls(), 1);
  EXPECT_EQ(dialog.SavedClipState(), 0) << "saved until the next message";
}

TEST_F(Erasing, ASecondOneInARowIsNotClipped) {
  const base::ScopedClientDc dc(dialog.m_hWnd);
  erase(dc.get());
  EXPECT_FALSE(erase(dc.get()));
  EXPECT_EQ(clipped->calls(), 1);
  EXPECT_EQ(dialog.SavedClipState(), 0) << "the first is still pending";
  EXPECT_FALSE(erase(dc.get()));
  EXPECT_EQ(clipped->calls(), 1);
}

TEST_F(Erasing, AnyOtherMessageEndsIt) {
  const base::ScopedClientDc dc(dialog.m_hWnd);
  erase(dc.get());
  handles(WM_APP);
  EXPECT_EQ(dialog.SavedClipState(), -1);
  erase(dc.get());
  EXPECT_EQ(clipped->calls(), 2);
}

TEST_F(Erasing, TheNextMessageRestoresNoClipRegion) {
  const base::ScopedClientDc dc(dialog.m_hWnd);
  const RECT close = rect_of(dialog.item(IDCANCEL));
  ASSERT_TRUE(PtVisible(dc.get(), close.left + 5, close.top + 5));
  erase(dc.get());
  handles(WM_APP);
  const base::Region clip(CreateRectRgn(0, 0, 0, 0));
  EXPECT_EQ(GetClipRgn(dc.get(), clip.get()), 1);
  EXPECT_FALSE(PtVisible(dc.get(), close.left + 5, close.top + 5));
}

TEST_F(Erasing, PendsAlsoWhenNothingWasClipped) {
  EXPECT_FALSE(erase(nullptr));
  EXPECT_EQ(clipped->calls(), 0);
  const base::ScopedClientDc dc(dialog.m_hWnd);
  erase(dc.get());
  EXPECT_EQ(clipped->calls(), 0) << "it is the second in a row";
}

TEST_F(Erasing, LeavesTheChildrensPixelsAlone) {
  const base::ScopedClientDc dc(dialog.m_hWnd);
  const RECT list = rect_of(dialog.item(IDC_LIST));
  constexpr COLORREF mark = RGB(1, 2, 250);
  SetPixel(dc.get(), list.left + 5, list.top + 5, mark);
  SetPixel(dc.get(), 2, 2, mark);
  send(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc.get()));
  EXPECT_EQ(GetPixel(dc.get(), 2, 2), GetSysColor(COLOR_3DFACE));
  // Outside the clip region a pixel cannot be read, so it is opened first.
  SelectClipRgn(dc.get(), nullptr);
  EXPECT_EQ(GetPixel(dc.get(), list.left + 5, list.top + 5), mark);
}

/// Takes a dialog's window over and hands the dialog's procedure one message more after the last one has passed through
/// it and the window still exists.
class MessageAfterTheLast {
 public:
  explicit MessageAfterTheLast(HWND window)
      : dialog_procedure_(reinterpret_cast<DLGPROC>(GetWindowLongPtrW(window, DWLP_DLGPROC))),
        original_(
            reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)))) {
    current = this;
  }
  ~MessageAfterTheLast() { current = nullptr; }
  MessageAfterTheLast(const MessageAfterTheLast&) = delete;
  MessageAfterTheLast& operator=(const MessageAfterTheLast&) = delete;

  /// What the dialog's procedure returned; nothing when the window was destroyed before.
  std::optional<INT_PTR> returned;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = CallWindowProcW(current->original_, window, message, wParam, lParam);
    if (message == WM_NCDESTROY && IsWindow(window)) {
      current->returned = current->dialog_procedure_(window, WM_APP, 0, 0);
    }
    return result;
  }

  inline static MessageAfterTheLast* current = nullptr;

  DLGPROC dialog_procedure_;
  WNDPROC original_;
};

TEST(DialogProcedure, PassesOverWhatComesAfterTheLastMessageOfALivingWindow) {
  TestDialog<IDD_SIZING_BORDER> dialog;
  dialog.on_message = [](UINT message, WPARAM, LPARAM, LRESULT&) { return message == WM_APP; };
  const HWND window = dialog.Create(nullptr);
  ASSERT_NE(window, nullptr);
  const MessageAfterTheLast late(window);
  DestroyWindow(window);
  EXPECT_EQ(late.returned, FALSE);
  EXPECT_TRUE(dialog.has_seen(WM_NCDESTROY));
  EXPECT_FALSE(dialog.has_seen(WM_APP));
}

}  // namespace
}  // namespace resizable_test
