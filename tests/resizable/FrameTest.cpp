#include <gtest/gtest.h>

#include "ImportProbe.h"
#include "ResizableFrame.h"
#include "TestWindows.h"

ZD_IMPORT_PROBE(SetWindowRgn, SetRegionProbe);
ZD_IMPORT_PROBE(SetWindowPos, SetPositionProbe);

namespace resizable_test {
namespace {

using resizable::NcCalcSizeHandler;

constexpr DWORD modal_style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;

HWND make_window(DWORD style, DWORD ex_style = 0, HWND parent = nullptr, HMENU menu = nullptr) {
  return CreateWindowExW(ex_style, L"#32770", L"", style, 100, 100, 300, 200, parent, menu, nullptr, nullptr);
}

DWORD style_of(HWND window) { return static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE)); }

class SizingBorder : public testing::Test {};

TEST_F(SizingBorder, ReplacesAModalFrameAndKeepsTheClientSize) {
  const OwnedWindow dialog(make_window(modal_style, WS_EX_DLGMODALFRAME));
  const CSize before = client_size(dialog.get());
  resizable::add_sizing_border(dialog.get());
  EXPECT_EQ(style_of(dialog.get()) & (DS_MODALFRAME | WS_THICKFRAME), DWORD{WS_THICKFRAME});
  EXPECT_EQ(client_size(dialog.get()), before);
}

TEST_F(SizingBorder, KeepsTheClientSizeOfADialogWithAMenu) {
  HMENU menu = CreateMenu();
  AppendMenuW(menu, MF_STRING, 1, L"Item");
  const OwnedWindow dialog(make_window(modal_style, WS_EX_DLGMODALFRAME, nullptr, menu));
  const CSize before = client_size(dialog.get());
  resizable::add_sizing_border(dialog.get());
  EXPECT_EQ(client_size(dialog.get()), before);
}

TEST_F(SizingBorder, KeepsTheClientSizeOfADialogWithAFrameOfItsOwn) {
  const OwnedWindow dialog(make_window(modal_style, WS_EX_DLGMODALFRAME));
  Listener frame(dialog.get(), [&](UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (message != WM_NCCALCSIZE) return false;
    result = DefWindowProcW(dialog.get(), message, wParam, lParam);
    reinterpret_cast<RECT*>(lParam)->bottom -= 30;
    return true;
  });
  resize(dialog.get(), 320, 240);
  const CSize before = client_size(dialog.get());
  resizable::add_sizing_border(dialog.get());
  EXPECT_EQ(client_size(dialog.get()), before);
}

TEST_F(SizingBorder, DoesNotMoveTheDialogAndSendsNoMessage) {
  const OwnedWindow dialog(make_window(modal_style));
  const RECT before = test_support::window_rect(dialog.get());
  UINT flags = 0;
  SetPositionProbe probe;
  probe.replace([&](HWND window, HWND after, int x, int y, int cx, int cy, UINT given) {
    flags = given;
    return probe.original(window, after, x, y, cx, cy, given);
  });
  resizable::add_sizing_border(dialog.get());
  const RECT after = test_support::window_rect(dialog.get());
  EXPECT_EQ(flags, 0x616U);
  EXPECT_EQ(after.left, before.left);
  EXPECT_EQ(after.top, before.top);
}

TEST_F(SizingBorder, LeavesADialogAloneThatHasOne) {
  const OwnedWindow dialog(make_window(modal_style | WS_THICKFRAME));
  SetPositionProbe probe;
  resizable::add_sizing_border(dialog.get());
  EXPECT_EQ(style_of(dialog.get()), modal_style | WS_THICKFRAME | WS_CLIPSIBLINGS);
  EXPECT_EQ(probe.calls(), 0);
}

TEST_F(SizingBorder, LeavesAChildDialogAlone) {
  const OwnedWindow parent(make_popup());
  const HWND child = make_window(WS_CHILD | DS_MODALFRAME, 0, parent.get());
  SetPositionProbe probe;
  resizable::add_sizing_border(child);
  EXPECT_EQ(style_of(child) & (DS_MODALFRAME | WS_THICKFRAME), DWORD{DS_MODALFRAME});
  EXPECT_EQ(probe.calls(), 0);
}

TEST(ModifyStyle, WritesOnlyWhatChanges) {
  const OwnedWindow window(make_popup());
  int notified = 0;
  Listener listener(window.get(), [&](UINT message, WPARAM, LPARAM, LRESULT&) {
    if (message == WM_STYLECHANGED) ++notified;
    return false;
  });
  resizable::modify_style(window.get(), GWL_EXSTYLE, 0, WS_EX_DLGMODALFRAME);
  EXPECT_TRUE(GetWindowLongW(window.get(), GWL_EXSTYLE) & WS_EX_DLGMODALFRAME);
  EXPECT_EQ(notified, 1);
  resizable::modify_style(window.get(), GWL_EXSTYLE, 0, WS_EX_DLGMODALFRAME);
  EXPECT_EQ(notified, 1);
  resizable::modify_style(window.get(), GWL_EXSTYLE, WS_EX_DLGMODALFRAME, 0);
  EXPECT_FALSE(GetWindowLongW(window.get(), GWL_EXSTYLE) & WS_EX_DLGMODALFRAME);
}

class ValidPartOfFrame : public testing::Test {
 protected:
  ValidPartOfFrame() {
    params.rgrc[0] = {0, 0, 200, 100};
    params.rgrc[1] = {1, 1, 2, 2};
    params.rgrc[2] = {50, 60, 300, 400};
    params.lppos = &position;
  }

  void adjust(bool after_default) { handler.adjust(dialog.get(), after_default, &params, &result); }

  OwnedWindow dialog{make_window(modal_style)};
  NcCalcSizeHandler handler;
  WINDOWPOS position{};
  NCCALCSIZE_PARAMS params{};
  LRESULT result = 0;
};

TEST_F(ValidPartOfFrame, IsReportedFromTheOldClientArea) {
  adjust(false);
  EXPECT_EQ(params.rgrc[1], (RECT{1, 1, 2, 2})) << "nothing changes before";
  adjust(true);
  EXPECT_EQ(params.rgrc[0], (RECT{0, 0, 200, 100}));
  EXPECT_EQ(params.rgrc[1], (RECT{50, 60, 200, 100}));
  EXPECT_EQ(params.rgrc[2], (RECT{50, 60, 200, 100}));
  EXPECT_EQ(result, WVR_VALIDRECTS);
}

TEST_F(ValidPartOfFrame, IsNotReportedWhenTheSizeStays) {
  position.flags = SWP_NOSIZE;
  adjust(false);
  adjust(true);
  EXPECT_EQ(params.rgrc[1], (RECT{1, 1, 2, 2}));
  EXPECT_EQ(result, 0);
}

TEST_F(ValidPartOfFrame, IsNotReportedOverAResultThatIsThere) {
  adjust(false);
  result = WVR_REDRAW;
  adjust(true);
  EXPECT_EQ(params.rgrc[1], (RECT{1, 1, 2, 2}));
  EXPECT_EQ(result, WVR_REDRAW);
}

TEST_F(ValidPartOfFrame, SurvivesMissingParameters) {
  handler.adjust(dialog.get(), false, nullptr, &result);
  handler.adjust(dialog.get(), true, nullptr, &result);
  params.lppos = nullptr;
  adjust(false);
  adjust(true);
  EXPECT_EQ(result, 0);
}

TEST_F(ValidPartOfFrame, DropsTheRegionUnderACaptionOnce) {
  SetRegionProbe probe;
  probe.replace([&](HWND window, HRGN region, BOOL redraw) {
    EXPECT_EQ(window, dialog.get());
    EXPECT_EQ(region, nullptr);
    EXPECT_EQ(redraw, FALSE);
    // The system calculates the frame again from inside.
    NCCALCSIZE_PARAMS inner = params;
    LRESULT inner_result = 0;
    handler.adjust(dialog.get(), false, &inner, &inner_result);
    handler.adjust(dialog.get(), true, &inner, &inner_result);
    EXPECT_EQ(inner_result, 0);
    return TRUE;
  });
  adjust(false);
  adjust(true);
  EXPECT_EQ(probe.calls(), 1);
  adjust(false);
  result = 0;
  adjust(true);
  EXPECT_EQ(probe.calls(), 2) << "and again at the next calculation";
}

TEST_F(ValidPartOfFrame, KeepsTheRegionOfAMaximisedDialog) {
  SetWindowLongPtrW(dialog.get(), GWL_STYLE, modal_style | WS_MAXIMIZE);
  SetRegionProbe probe;
  adjust(false);
  adjust(true);
  EXPECT_EQ(result, WVR_VALIDRECTS);
  EXPECT_EQ(probe.calls(), 0);
}

}  // namespace
}  // namespace resizable_test
