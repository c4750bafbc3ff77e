// How a resizable dialog opens where and as large as it was closed.

#include <gtest/gtest.h>

#include "RegistryTree.h"
#include "TestDialog.h"

namespace resizable_test {
namespace {

constexpr wchar_t dialog_key[] = L"SOFTWARE\\A B\\C\\Windows Placement";
constexpr wchar_t dialog_value[] = L"TestDialog";

class DialogPlacement : public DialogFixture<IDD_SIZING_BORDER> {
 protected:
  void open_restored() {
    open_with([this] {
      template_rect = rect();
      restored = dialog.restore();
      zoomed_at_initialisation = IsZoomed(dialog.m_hWnd) != FALSE;
    });
  }

  static bool is_stored() {
    return test_support::registry_bytes(HKEY_CURRENT_USER, dialog_key, dialog_value).size() == 44;
  }

  const LONG caption = GetSystemMetrics(SM_CYCAPTION);
  RECT template_rect{};
  BOOL restored = FALSE;
  bool zoomed_at_initialisation = false;
};

TEST_F(DialogPlacement, FirstOpeningIsOneCaptionShorterThanTheTemplate) {
  open_restored();
  EXPECT_EQ(restored, FALSE);
  EXPECT_TRUE(is_stored());
  EXPECT_EQ(rect(), (RECT{template_rect.left, template_rect.top, template_rect.right, template_rect.bottom - caption}));
  EXPECT_TRUE(IsWindowVisible(dialog.m_hWnd));
}

TEST_F(DialogPlacement, FirstOpeningLeavesTheSmallestSizeAtTheTemplates) {
  open_restored();
  MINMAXINFO info{};
  send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_EQ(info.ptMinTrackSize.y, template_rect.bottom - template_rect.top);
  const CSize opened = size();
  resize(dialog.m_hWnd, opened.cx, opened.cy);
  EXPECT_EQ(size().cy, opened.cy + caption) << "whoever changes the size stops at the smallest";
}

TEST_F(DialogPlacement, OpensAsShortAgainAsItWasTheFirstTime) {
  open_restored();
  const RECT first = rect();
  destroy();
  open_restored();
  EXPECT_NE(restored, FALSE);
  EXPECT_EQ(rect(), first);
  destroy();
  open_restored();
  EXPECT_EQ(rect(), first) << "and does not shrink from opening to opening";
}

TEST_F(DialogPlacement, OpensWhereAndAsLargeAsItWasClosed) {
  open_restored();
  MoveWindow(dialog.m_hWnd, 222, 111, template_rect.right + 77, template_rect.bottom + 55, TRUE);
  const RECT closed = rect();
  destroy();
  open_restored();
  EXPECT_EQ(rect(), closed);
}

TEST_F(DialogPlacement, LaysOutItsChildrenForTheRestoredSize) {
  const auto open_anchored = [this] {
    open_with([this] {
      dialog.AddAnchor(dialog.item(IDCANCEL), BOTTOM_RIGHT);
      dialog.restore();
    });
  };
  open_anchored();
  resize(dialog.m_hWnd, size().cx + 100, size().cy + 100);
  const RECT closed = rect_of(dialog.item(IDCANCEL));
  destroy();
  open_anchored();
  EXPECT_EQ(rect_of(dialog.item(IDCANCEL)), closed);
}

TEST_F(DialogPlacement, TooSmallAStoredSizeIsHeldAtTheSmallest) {
  open_restored();
  const CSize smallest = resizable::size_of(template_rect);
  destroy();
  WINDOWPLACEMENT placement{};
  placement.showCmd = SW_SHOWNORMAL;
  for (const RECT tiny : {RECT{100, 100, 110, 110}, RECT{100, 100, 100, 100}, RECT{300, 300, 100, 100}}) {
    placement.rcNormalPosition = tiny;
    test_support::write_registry_value(HKEY_CURRENT_USER, dialog_key, dialog_value, REG_BINARY, &placement,
                                       sizeof placement);
    open_restored();
    EXPECT_EQ(size(), smallest);
    destroy();
  }
}

TEST_F(DialogPlacement, ClosedMaximisedItOpensMaximised) {
  open_restored();
  ShowWindow(dialog.m_hWnd, SW_MAXIMIZE);
  destroy();
  open_restored();
  EXPECT_TRUE(zoomed_at_initialisation);
  EXPECT_EQ(dialog.ShowCount(), 0) << "without a grip";
}

TEST_F(DialogPlacement, ClosedMinimisedItOpensShown) {
  open_restored();
  const RECT normal = rect();
  ShowWindow(dialog.m_hWnd, SW_MINIMIZE);
  destroy();
  open_restored();
  EXPECT_FALSE(IsIconic(dialog.m_hWnd));
  EXPECT_TRUE(IsWindowVisible(dialog.m_hWnd));
  EXPECT_EQ(rect(), normal);
}

TEST_F(DialogPlacement, OnlyTheRectangleIsKeptWhenTheDialogWantsThat) {
  open_restored();
  dialog.m_bRectOnly = TRUE;
  ShowWindow(dialog.m_hWnd, SW_MAXIMIZE);
  destroy();
  open_restored();
  EXPECT_FALSE(zoomed_at_initialisation);
}

TEST_F(DialogPlacement, IsNotStoredUnlessTheDialogWantsThat) {
  open();
  destroy();
  EXPECT_FALSE(is_stored());
}

}  // namespace
}  // namespace resizable_test
