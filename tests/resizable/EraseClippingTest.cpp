#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "DeviceContext.h"
#include "EraseClipping.h"
#include "ImportProbe.h"
#include "LayoutWindow.h"

ZD_IMPORT_PROBE(GetWindowRgn, WindowRegionProbe);
ZD_IMPORT_PROBE(GetClipRgn, ClipRegionProbe);
ZD_IMPORT_PROBE(OffsetRgn, OffsetRegionProbe);
ZD_IMPORT_PROBE(CreateRectRgnIndirect, CreateRectRegionProbe);
ZD_IMPORT_PROBE(DeleteObject, DeleteObjectProbe);

namespace resizable_test {
namespace {

using base::Region;

Region rect_region(const RECT& rect) { return Region(CreateRectRgnIndirect(&rect)); }

Region without(Region from, const RECT& rect) {
  CombineRgn(from.get(), from.get(), rect_region(rect).get(), RGN_DIFF);
  return from;
}

testing::AssertionResult same_area(const Region& left, const Region& right) {
  if (EqualRgn(left.get(), right.get())) return testing::AssertionSuccess();
  RECT left_box{};
  RECT right_box{};
  GetRgnBox(left.get(), &left_box);
  GetRgnBox(right.get(), &right_box);
  return testing::AssertionFailure() << "bounds " << testing::PrintToString(left_box) << " and "
                                     << testing::PrintToString(right_box);
}

constexpr RECT client{0, 0, 300, 200};
constexpr RECT child_rect{10, 20, 60, 40};

class EraseRegion : public testing::Test {
 protected:
  EraseRegion() {
    layout.Attach(parent.get());
    ShowWindow(parent.get(), SW_SHOWNOACTIVATE);
    InitCommonControls();
  }

  HWND anchored(const wchar_t* window_class, DWORD style = 0, const RECT& rect = child_rect) {
    const HWND child = make_child(parent.get(), window_class, rect, style);
    layout.AddAnchor(child, TOP_LEFT);
    return child;
  }

  Region erased() {
    HRGN region = nullptr;
    layout.BuildEraseRegion(&region);
    return Region(region);
  }

  OwnedWindow parent{make_popup()};
  LayoutWindow layout;
};

TEST_F(EraseRegion, IsTheClientAreaWithoutChildren) {
  make_child(parent.get(), L"Edit", child_rect);
  EXPECT_TRUE(same_area(erased(), rect_region(client))) << "a child that is not anchored is erased";
}

TEST_F(EraseRegion, LeavesOutEveryControl) {
  anchored(L"Edit");
  anchored(L"ListBox", 0, {100, 20, 150, 90});
  EXPECT_TRUE(same_area(erased(), without(without(rect_region(client), rect_of(GetWindow(parent.get(), GW_CHILD))),
                                          rect_of(GetWindow(GetWindow(parent.get(), GW_CHILD), GW_HWNDNEXT)))));
}

TEST_F(EraseRegion, LeavesOutAStaticControlLikeAnyOther) {
  for (const DWORD kind : {SS_LEFT, SS_ICON, SS_BLACKFRAME, SS_ETCHEDFRAME}) {
    layout.ClearAnchors();
    const OwnedWindow child(anchored(L"Static", kind));
    EXPECT_TRUE(same_area(erased(), without(rect_region(client), rect_of(child.get())))) << kind;
  }
}

TEST_F(EraseRegion, KeepsAGroupBox) {
  anchored(L"Button", BS_GROUPBOX);
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
}

TEST_F(EraseRegion, LeavesOutOtherButtons) {
  for (const DWORD kind : {BS_PUSHBUTTON, BS_AUTOCHECKBOX, BS_AUTORADIOBUTTON, BS_OWNERDRAW}) {
    layout.ClearAnchors();
    const OwnedWindow child(anchored(L"Button", kind));
    EXPECT_TRUE(same_area(erased(), without(rect_region(client), child_rect))) << kind;
  }
}

TEST_F(EraseRegion, KeepsAnOwnerDrawnButtonThatLetsHitsThrough) {
  const HWND child = make_child(parent.get(), L"Button", child_rect, BS_OWNERDRAW);
  LPARAM asked = 0;
  Listener transparent(child, [&](UINT message, WPARAM, LPARAM position, LRESULT& result) {
    if (message != WM_NCHITTEST) return false;
    asked = position;
    result = HTTRANSPARENT;
    return true;
  });
  layout.AddAnchor(child, TOP_LEFT);
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
  EXPECT_EQ(LOWORD(asked), 110) << "asked at the button's position on the screen";
  EXPECT_EQ(HIWORD(asked), 120);
}

TEST_F(EraseRegion, KeepsATransparentToolbarAndLeavesOutAnOpaqueOne) {
  constexpr DWORD plain = CCS_NORESIZE | CCS_NOPARENTALIGN | CCS_NODIVIDER;
  const HWND toolbar = anchored(TOOLBARCLASSNAMEW, plain | TBSTYLE_TRANSPARENT);
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
  DestroyWindow(toolbar);
  layout.ClearAnchors();
  const HWND opaque = anchored(TOOLBARCLASSNAMEW, plain);
  EXPECT_TRUE(same_area(erased(), without(rect_region(client), rect_of(opaque))));
}

TEST_F(EraseRegion, TheClassNameIsComparedWithItsCase) {
  LayoutInfo info{};
  info.hWnd = make_child(parent.get(), L"Button", child_rect, BS_GROUPBOX);
  lstrcpyW(info.class_name, L"Button");
  EXPECT_FALSE(layout.CanBeClipped(info));
  lstrcpyW(info.class_name, L"BUTTON");
  EXPECT_TRUE(layout.CanBeClipped(info));
}

TEST_F(EraseRegion, PassesOverHiddenAndDestroyedChildren) {
  ShowWindow(anchored(L"Edit"), SW_HIDE);
  DestroyWindow(anchored(L"Edit", 0, {100, 20, 150, 90}));
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
}

TEST_F(EraseRegion, AGroupBoxComesBackOverWhatCameBefore) {
  anchored(L"Edit");
  anchored(L"Button", BS_GROUPBOX, {0, 0, 100, 100});
  EXPECT_TRUE(same_area(erased(), rect_region(client))) << "in the order of the anchors";
  layout.ClearAnchors();
  anchored(L"Button", BS_GROUPBOX, {0, 0, 100, 100});
  anchored(L"Edit");
  EXPECT_TRUE(same_area(erased(), without(rect_region(client), child_rect)));
}

TEST_F(EraseRegion, FollowsTheRegionOfAChild) {
  const HWND child = anchored(L"Edit");
  SetWindowRgn(child, CreateRectRgn(5, 5, 15, 15), FALSE);
  EXPECT_TRUE(same_area(erased(), without(rect_region(client), {15, 25, 25, 35})));
}

/// The erase region while a system call that reads a child's own region fails.
template <class Probe, class Failure>
bool leaves_out_the_rectangle(Failure failure, const std::function<Region()>& erased) {
  Probe probe;
  probe.fail(0, failure);
  return same_area(erased(), without(rect_region(client), child_rect));
}

TEST_F(EraseRegion, LeavesOutTheRectangleOfAChildWhoseRegionCannotBeRead) {
  SetWindowRgn(anchored(L"Edit"), CreateRectRgn(5, 5, 15, 15), FALSE);
  const auto now = [this] { return erased(); };
  EXPECT_TRUE(leaves_out_the_rectangle<WindowRegionProbe>(ERROR, now));
  EXPECT_TRUE(leaves_out_the_rectangle<OffsetRegionProbe>(ERROR, now));
}

/// A child whose class says that it may be clipped, and that says otherwise itself.
class AnsweringChild : public EraseRegion {
 protected:
  void anchor(const ChildResizeFlags& properties, BOOL clipping) {
    listener.emplace(child, [=, this](UINT message, WPARAM question, LPARAM record, LRESULT& result) {
      if (message != WMU_RESIZESUPPORT) return false;
      asked_clipping += question == RQ_CLIPPING;
      if (question == RQ_PROPERTIES) *reinterpret_cast<ChildResizeFlags*>(record) = properties;
      if (question == RQ_CLIPPING) *reinterpret_cast<BOOL*>(record) = clipping;
      result = TRUE;
      return true;
    });
    layout.AddAnchor(child, TOP_LEFT);
  }

  HWND child = make_child(parent.get(), L"Edit", child_rect);
  std::optional<Listener> listener;
  int asked_clipping = 0;
};

TEST_F(AnsweringChild, IsErasedByItsCachedAnswerWithoutBeingAsked) {
  anchor({FALSE, TRUE, FALSE, FALSE}, TRUE);
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
  EXPECT_EQ(asked_clipping, 0);
}

TEST_F(AnsweringChild, IsLeftOutByItsAnswerWhenItWantsToBeAsked) {
  anchor({TRUE, TRUE, FALSE, FALSE}, TRUE);
  EXPECT_TRUE(same_area(erased(), without(rect_region(client), child_rect)));
  EXPECT_EQ(asked_clipping, 1);
}

TEST_F(AnsweringChild, IsErasedByItsAnswerWhenItWantsToBeAsked) {
  anchor({TRUE, TRUE, TRUE, FALSE}, FALSE);
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
  EXPECT_EQ(asked_clipping, 1);
}

TEST_F(EraseRegion, AsksTheDialogForChildrenWithCallbacks) {
  BOOL answer = TRUE;
  layout.callback = [&](LayoutInfo&) { return answer; };
  layout.AddAnchorCallback(make_child(parent.get(), L"Edit", child_rect), 7);
  EXPECT_TRUE(same_area(erased(), without(rect_region(client), child_rect)));
  answer = FALSE;
  EXPECT_TRUE(same_area(erased(), rect_region(client)));
}

class EraseClipping : public EraseRegion {
 protected:
  Region clip(HDC dc) {
    Region region(CreateRectRgn(0, 0, 0, 0));
    clip_state = GetClipRgn(dc, region.get());
    return region;
  }
  int clip_state = 0;
};

TEST_F(EraseClipping, SelectsTheEraseRegionIntoTheDialogsDc) {
  anchored(L"Edit");
  const base::ScopedClientDc dc(parent.get());
  EXPECT_EQ(layout.ApplyEraseClipping(dc.get(), FALSE), TRUE);
  EXPECT_TRUE(same_area(clip(dc.get()), without(rect_region(client), child_rect)));
  EXPECT_EQ(clip_state, 1);
  EXPECT_EQ(layout.SavedClipState(), 0) << "there was no clip region before";
}

TEST_F(EraseClipping, NarrowsTheClipRegionThatIsThere) {
  anchored(L"Edit");
  const base::ScopedClientDc dc(parent.get());
  SelectClipRgn(dc.get(), rect_region({0, 0, 50, 50}).get());
  layout.ApplyEraseClipping(dc.get(), FALSE);
  EXPECT_TRUE(same_area(clip(dc.get()), without(rect_region({0, 0, 50, 50}), child_rect)));
  EXPECT_EQ(layout.SavedClipState(), 1);
}

TEST_F(EraseClipping, UndoingRestoresNothing) {
  anchored(L"Edit");
  const base::ScopedClientDc dc(parent.get());
  layout.ApplyEraseClipping(dc.get(), FALSE);
  EXPECT_EQ(layout.ApplyEraseClipping(dc.get(), TRUE), FALSE);
  EXPECT_EQ(layout.SavedClipState(), -1);
  EXPECT_TRUE(same_area(clip(dc.get()), without(rect_region(client), child_rect)));
}

TEST_F(EraseClipping, LeavesTheDcOfAnotherWindowAlone) {
  const HWND child = anchored(L"Edit");
  const base::ScopedClientDc dc(child);
  EXPECT_EQ(layout.ApplyEraseClipping(dc.get(), FALSE), FALSE);
  clip(dc.get());
  EXPECT_EQ(clip_state, 0);
  EXPECT_EQ(layout.SavedClipState(), -1);
}

TEST_F(EraseClipping, SavesTheClipRegionBeforeItBuildsItsOwn) {
  anchored(L"Edit");
  const base::ScopedClientDc dc(parent.get());
  const WindowRegionProbe children;
  ClipRegionProbe saved;
  saved.replace([&](HDC from, HRGN region) {
    EXPECT_EQ(children.calls(), 0);
    return saved.original(from, region);
  });
  layout.ApplyEraseClipping(dc.get(), FALSE);
  EXPECT_EQ(saved.calls(), 1);
  EXPECT_EQ(children.calls(), 1);
}

TEST_F(EraseClipping, LeavesNoDcAtAllAlone) {
  EXPECT_EQ(layout.ApplyEraseClipping(nullptr, FALSE), FALSE);
  EXPECT_EQ(layout.SavedClipState(), -1);
}

TEST_F(EraseClipping, DeletesEveryRegionThatItCreates) {
  anchored(L"Edit");
  SetWindowRgn(anchored(L"Edit", 0, {100, 20, 150, 90}), CreateRectRgn(5, 5, 15, 15), FALSE);
  const base::ScopedClientDc dc(parent.get());
  const CreateRectRegionProbe rectangles;
  const DeleteObjectProbe deleted;
  layout.ApplyEraseClipping(dc.get(), FALSE);
  EXPECT_EQ(rectangles.calls(), 3) << "the client area and one a child";
  EXPECT_EQ(deleted.calls(), 3);
}

TEST_F(EraseClipping, ClipsNothingWithoutARegionOfTheClientArea) {
  anchored(L"Edit");
  const base::ScopedClientDc dc(parent.get());
  CreateRectRegionProbe rectangles;
  rectangles.fail(0, nullptr);
  layout.ApplyEraseClipping(dc.get(), FALSE);
  clip(dc.get());
  EXPECT_EQ(clip_state, 0) << "no clip region";
}

TEST_F(EraseClipping, LeavesAChildInWhoseRegionCannotBeCreated) {
  anchored(L"Edit");
  anchored(L"Edit", 0, {100, 20, 150, 90});
  const base::ScopedClientDc dc(parent.get());
  CreateRectRegionProbe rectangles;
  rectangles.fail(2, nullptr);
  layout.ApplyEraseClipping(dc.get(), FALSE);
  EXPECT_TRUE(same_area(clip(dc.get()), without(rect_region(client), {100, 20, 150, 90})));
}

}  // namespace
}  // namespace resizable_test
