// A resizable dialog over bases of the dialog class's own.

#include <gtest/gtest.h>

#include "ResizableDialog.h"
#include "TestDialogs.h"
#include "TestWindows.h"

namespace resizable_test {
namespace {

/// A window class that knows more than the plain one.
class TitledWindow : public platform::CWindow {
 public:
  void set_title(const wchar_t* title) {
    SetText(title);
    ++titles_set;
  }
  int titles_set = 0;
};

/// A dialog implementation that remembers over which window it was created.
template <class T, class TBase>
class OwnedDialogImpl : public platform::CDialogImpl<T, TBase> {
 public:
  HWND CreateOver(HWND owner) {
    made_over = owner;
    return this->Create(owner);
  }
  HWND made_over = nullptr;
};

class DialogOfOwnBases
    : public CResizableDialogImplT<DialogOfOwnBases, TitledWindow, OwnedDialogImpl<DialogOfOwnBases, TitledWindow>> {
  using Base = CResizableDialogImplT;

 public:
  static constexpr int IDD = IDD_MODAL_FRAME;
  using Base::Anchored;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override {
    if (Base::ProcessWindowMessage(window, message, wParam, lParam, result, mapId)) return TRUE;
    if (message != WM_INITDIALOG) return FALSE;
    set_title(L"own bases");
    AddAnchor(GetItem(IDCANCEL), BOTTOM_RIGHT);
    return TRUE;
  }
};

TEST(DialogOfOwnBasesTest, OpensResizesAndCloses) {
  const OwnedWindow owner(make_popup());
  DialogOfOwnBases dialog;
  const OwnedWindow window(dialog.CreateOver(owner.get()));
  ASSERT_NE(window.get(), nullptr);
  EXPECT_EQ(dialog.made_over, owner.get());
  EXPECT_EQ(dialog.titles_set, 1);
  EXPECT_EQ(dialog.GetText(), L"own bases");
  EXPECT_EQ(dialog.Anchored().size(), 3U);
  EXPECT_TRUE(dialog.GetStyle() & WS_THICKFRAME);

  const RECT close = rect_of(dialog.GetItem(IDCANCEL));
  const CSize size = resizable::size_of(dialog.GetWindowRect());
  resize(window.get(), size.cx + 60, size.cy + 50);
  EXPECT_EQ(rect_of(dialog.GetItem(IDCANCEL)),
            (RECT{close.left + 60, close.top + 50, close.right + 60, close.bottom + 50}));
  EXPECT_EQ(rect_of(dialog.SizeGrip().m_hWnd).right, client_size(window.get()).cx);

  DestroyWindow(window.get());
  EXPECT_EQ(dialog.m_hWnd, nullptr);
  EXPECT_EQ(dialog.Anchored().size(), 0U);
}

}  // namespace
}  // namespace resizable_test
