// What becomes of a dialog at WM_INITDIALOG, and of its children.

#include <gmock/gmock.h>

#include "DialogDriver.h"
#include "ImportProbe.h"
#include "TestDialog.h"

ZD_IMPORT_PROBE(CreateWindowExW, CreateWindowProbe);

namespace resizable_test {
namespace {

using ResizableDialog = DialogFixture<IDD_SIZING_BORDER>;
using ModalFrameDialog = DialogFixture<IDD_MODAL_FRAME>;
using EmptyDialog = DialogFixture<IDD_EMPTY>;

TEST_F(ResizableDialog, AnchorsEveryChildButTheGrip) {
  open();
  ASSERT_EQ(dialog.Anchored().size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(dialog.Anchored()[i].top_left.anchor, TOP_LEFT);
    EXPECT_EQ(dialog.Anchored()[i].bottom_right.anchor, TOP_LEFT);
    EXPECT_NE(dialog.Anchored()[i].hWnd, dialog.grip());
  }
}

TEST_F(ResizableDialog, LeavesChildrenThatAreNeverAnchoredWhereTheyAre) {
  open();
  const RECT before = rect_of(dialog.item(IDC_NEVER_ANCHORED));
  resize(dialog.m_hWnd, size().cx + 111, size().cy + 77);
  EXPECT_EQ(rect_of(dialog.item(IDC_NEVER_ANCHORED)), before);
}

TEST_F(ResizableDialog, MovesAndStretchesWhatTheDialogAnchorsAgain) {
  open_with([this] {
    dialog.AddAnchor(dialog.item(IDC_LIST), TOP_LEFT, BOTTOM_RIGHT);
    dialog.AddAnchor(dialog.item(IDC_ADD), TOP_RIGHT);
    dialog.AddAnchor(dialog.item(IDCANCEL), BOTTOM_RIGHT);
  });
  EXPECT_EQ(dialog.Anchored().size(), 5U) << "replaced, not added";
  const RECT list = rect_of(dialog.item(IDC_LIST));
  const RECT add = rect_of(dialog.item(IDC_ADD));
  const RECT close = rect_of(dialog.item(IDCANCEL));
  resize(dialog.m_hWnd, size().cx + 111, size().cy + 77);
  EXPECT_EQ(rect_of(dialog.item(IDC_LIST)), (RECT{list.left, list.top, list.right + 111, list.bottom + 77}));
  EXPECT_EQ(rect_of(dialog.item(IDC_ADD)), (RECT{add.left + 111, add.top, add.right + 111, add.bottom}));
  EXPECT_EQ(rect_of(dialog.item(IDCANCEL)),
            (RECT{close.left + 111, close.top + 77, close.right + 111, close.bottom + 77}));
}

TEST_F(ResizableDialog, RunsTheDialogsOwnInitialisationAfterItsOwn) {
  std::size_t anchored = 0;
  bool has_grip = false;
  CSize minimum;
  open_with([&] {
    anchored = dialog.Anchored().size();
    has_grip = IsWindow(dialog.grip()) != FALSE;
    minimum = dialog.MinTrackingSize();
  });
  EXPECT_EQ(anchored, 5U);
  EXPECT_TRUE(has_grip);
  EXPECT_EQ(minimum, size());
}

TEST_F(ResizableDialog, ShowsTheGripInTheCorner) {
  open();
  ShowWindow(dialog.m_hWnd, SW_SHOWNOACTIVATE);
  const CSize client = client_size(dialog.m_hWnd);
  const SIZE grip = dialog.SizeGrip().Size();
  EXPECT_EQ(dialog.ShowCount(), 1);
  EXPECT_TRUE(IsWindowVisible(dialog.grip()));
  EXPECT_EQ(rect_of(dialog.grip()), (RECT{client.cx - grip.cx, client.cy - grip.cy, client.cx, client.cy}));
}

TEST_F(ResizableDialog, PlacesTheGripBeforeTheDialogsOwnInitialisation) {
  RECT grip{};
  bool shown = false;
  open_with([&] {
    grip = rect_of(dialog.grip());
    shown = (GetWindowLongW(dialog.grip(), GWL_STYLE) & WS_VISIBLE) != 0;
  });
  EXPECT_EQ(grip.right, client_size(dialog.m_hWnd).cx);
  EXPECT_EQ(grip.bottom, client_size(dialog.m_hWnd).cy);
  EXPECT_TRUE(shown);
}

TEST_F(ResizableDialog, KeepsTheGripInTheCorner) {
  open();
  for (const CSize by : {CSize(50, 30), CSize(200, 100), CSize(1, 0)}) {
    resize(dialog.m_hWnd, size().cx + by.cx, size().cy + by.cy);
    const CSize client = client_size(dialog.m_hWnd);
    EXPECT_EQ(rect_of(dialog.grip()).right, client.cx);
    EXPECT_EQ(rect_of(dialog.grip()).bottom, client.cy);
  }
}

TEST_F(ResizableDialog, KeepsASizingBorderThatIsThere) {
  open();
  EXPECT_TRUE(dialog.GetStyle() & WS_THICKFRAME);
  EXPECT_TRUE(dialog.GetExStyle() & WS_EX_DLGMODALFRAME);
  EXPECT_EQ(dialog.MinTrackingSize(), size());
}

TEST_F(ResizableDialog, ThatCannotCreateItsGripFailsToInitialise) {
  CreateWindowProbe probe;
  probe.replace([&](DWORD ex_style, LPCWSTR name, LPCWSTR text, DWORD style, int x, int y, int cx, int cy, HWND parent,
                    HMENU menu, HINSTANCE module, LPVOID parameter) -> HWND {
    if (lstrcmpiW(name, L"SCROLLBAR") == 0) return nullptr;
    return probe.original(ex_style, name, text, style, x, y, cx, cy, parent, menu, module, parameter);
  });
  bool initialised = false;
  open_with([&] { initialised = true; });
  EXPECT_FALSE(initialised) << "the dialog's own handler is skipped";
  EXPECT_EQ(dialog.Anchored().size(), 0U);
  EXPECT_TRUE(handles(WM_INITDIALOG));
  EXPECT_EQ(result, FALSE);
  send(WM_SIZE, SIZE_RESTORED);
}

TEST_F(ResizableDialog, ReturnsTrueForItsOwnPartOfTheInitialisation) {
  open();
  DestroyWindow(dialog.grip());
  EXPECT_FALSE(handles(WM_INITDIALOG));
  EXPECT_EQ(result, TRUE);
}

TEST_F(ModalFrameDialog, GetsASizingBorderAndKeepsItsClientSize) {
  RECT units{0, 0, 200, 120};
  open();
  MapDialogRect(dialog.m_hWnd, &units);
  EXPECT_TRUE(dialog.GetStyle() & WS_THICKFRAME);
  EXPECT_FALSE(dialog.GetStyle() & DS_MODALFRAME);
  EXPECT_TRUE(dialog.GetExStyle() & WS_EX_DLGMODALFRAME);
  EXPECT_EQ(client_size(dialog.m_hWnd), CSize(units.right, units.bottom));
}

TEST_F(ModalFrameDialog, IsMeasuredBeforeItGetsTheSizingBorder) {
  DWORD style = 0;
  open_with([&] { style = dialog.GetStyle(); });
  EXPECT_TRUE(style & WS_THICKFRAME) << "the border is there when the dialog initialises itself";
  RECT template_window{0, 0, client_size(dialog.m_hWnd).cx, client_size(dialog.m_hWnd).cy};
  AdjustWindowRectEx(&template_window, (style & ~DWORD{WS_THICKFRAME}) | DS_MODALFRAME, FALSE, dialog.GetExStyle());
  EXPECT_EQ(dialog.MinTrackingSize(), resizable::size_of(template_window));
  EXPECT_LT(dialog.MinTrackingSize().cx, size().cx) << "the smallest size does not grow by the border";
}

TEST_F(EmptyDialog, HasNothingToLayOut) {
  open();
  EXPECT_EQ(dialog.Anchored().size(), 0U);
  resize(dialog.m_hWnd, 500, 400);
  EXPECT_EQ(rect_of(dialog.grip()).right, client_size(dialog.m_hWnd).cx) << "but a grip to place";
}

class ChildDialog : public DialogFixture<IDD_CHILD> {
 protected:
  ChildDialog() {
    ShowWindow(parent.get(), SW_SHOWNOACTIVATE);
    open(parent.get());
  }
  ~ChildDialog() override { destroy(); }

  OwnedWindow parent{make_popup()};
};

TEST_F(ChildDialog, ShowsNoGrip) {
  EXPECT_EQ(dialog.ShowCount(), 0);
  EXPECT_FALSE(IsWindowVisible(dialog.grip()));
  resize(dialog.m_hWnd, 200, 150);
  send(WM_SIZE, SIZE_RESTORED);
  EXPECT_EQ(dialog.ShowCount(), 0);
  EXPECT_FALSE(IsWindowVisible(dialog.grip()));
}

TEST_F(ChildDialog, GetsNoSizingBorder) { EXPECT_FALSE(dialog.GetStyle() & WS_THICKFRAME); }

TEST_F(ChildDialog, LaysOutItsChildren) {
  dialog.AddAnchor(dialog.item(IDC_ADD), BOTTOM_RIGHT);
  const RECT before = rect_of(dialog.item(IDC_ADD));
  const CSize client = client_size(dialog.m_hWnd);
  resize(dialog.m_hWnd, client.cx + 40, client.cy + 30);
  const LONG right = client_size(dialog.m_hWnd).cx - client.cx;
  const LONG down = client_size(dialog.m_hWnd).cy - client.cy;
  EXPECT_GT(right, 0);
  EXPECT_GT(down, 0);
  EXPECT_EQ(rect_of(dialog.item(IDC_ADD)),
            (RECT{before.left + right, before.top + down, before.right + right, before.bottom + down}));
}

class ModalDialog : public ResizableDialog {};

TEST_F(ModalDialog, RunsResizesAndEndsWithItsResult) {
  dialog.on_message = [this](UINT message, WPARAM wParam, LPARAM, LRESULT&) {
    if (message == WM_INITDIALOG) return dialog.AddAnchor(dialog.item(IDCANCEL), BOTTOM_RIGHT), TRUE;
    if (message != WM_COMMAND || LOWORD(wParam) != IDCANCEL) return FALSE;
    return dialog.EndDialog(77);
  };
  RECT before{};
  RECT after{};
  test_support::DialogDriver user([&](HWND window) {
    before = rect_of(dialog.item(IDCANCEL));
    resize(window, size().cx + 60, size().cy + 50);
    after = rect_of(dialog.item(IDCANCEL));
    test_support::click(window, IDCANCEL);
  });
  EXPECT_EQ(dialog.DoModal(nullptr), 77);
  EXPECT_EQ(after.left, before.left + 60);
  EXPECT_EQ(after.top, before.top + 50);
  EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(ModalDialog, RunsASecondTimeAsFresh) {
  dialog.on_message = [this](UINT message, WPARAM wParam, LPARAM, LRESULT&) {
    if (message != WM_COMMAND || LOWORD(wParam) != IDCANCEL) return FALSE;
    return dialog.EndDialog(IDCANCEL);
  };
  std::vector<int> counts;
  std::vector<std::size_t> anchored;
  for (int run = 0; run < 2; ++run) {
    test_support::DialogDriver user([&](HWND window) {
      send(WM_SIZE, SIZE_RESTORED);
      counts.push_back(dialog.ShowCount());
      anchored.push_back(dialog.Anchored().size());
      send(WM_SIZE, SIZE_MAXIMIZED);
      test_support::click(window, IDCANCEL);
    });
    EXPECT_EQ(dialog.DoModal(nullptr), IDCANCEL);
  }
  EXPECT_THAT(counts, testing::ElementsAre(1, 1));
  EXPECT_THAT(anchored, testing::ElementsAre(5U, 5U));
}

}  // namespace
}  // namespace resizable_test
