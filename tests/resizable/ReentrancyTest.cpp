// Children and dialogs that act while they are asked: what is asked may change the layout, throw or take windows away.

#include <gmock/gmock.h>

#include <stdexcept>

#include "DeviceContext.h"
#include "ImportProbe.h"
#include "LayoutWindow.h"
#include "TestDialog.h"

ZD_IMPORT_PROBE(BeginDeferWindowPos, BeginProbe);

namespace resizable_test {
namespace {

constexpr RECT start{10, 20, 60, 40};
constexpr RECT moved{110, 20, 160, 40};  // start, on the right of a parent 100 wider

/// Calls `act` when the child gets a question, and handles the question.
Listener::Handler when_asked(WPARAM question, const std::function<void()>& act) {
  return [question, act](UINT message, WPARAM asked, LPARAM, LRESULT& result) {
    if (message != WMU_RESIZESUPPORT) return false;
    if (asked == question) act();
    result = TRUE;
    return true;
  };
}

using AskedChild = AnchorLayout;

TEST_F(AskedChild, MayReplaceTheWholeLayout) {
  const HWND asked = child(start);
  Listener listener(asked, when_asked(RQ_REPAINT, [this] {
                      for (int i = 0; i < 20; ++i) layout.AddAnchor(child(), TOP_LEFT);
                      layout.ClearAnchors();
                    }));
  layout.AddAnchor(asked, TOP_RIGHT);
  grow_to(400, 200);
  EXPECT_EQ(rect_of(asked), moved);
  EXPECT_EQ(layout.Anchored().size(), 0U);
}

using AskedDialog = AnchorLayout;

TEST_F(AskedDialog, MayAddChildrenOfBothKinds) {
  const HWND asked = child(start);
  const HWND added = child(start);
  bool first = true;
  layout.callback = [&](LayoutInfo& info) {
    info.top_left.anchor = info.bottom_right.anchor = TOP_RIGHT;
    info.top_left.margin.cx -= 300;
    info.bottom_right.margin.cx -= 300;
    if (!std::exchange(first, false)) return TRUE;
    for (int i = 0; i < 20; ++i) layout.AddAnchor(child(), TOP_LEFT);
    for (int i = 0; i < 20; ++i) layout.AddAnchorCallback(child(start), 8);
    layout.AddAnchorCallback(added, 9);
    return TRUE;
  };
  layout.AddAnchorCallback(asked, 7);
  grow_to(400, 200);
  EXPECT_EQ(rect_of(asked), moved);
  EXPECT_EQ(rect_of(added), moved) << "it is asked for in the same run";
  EXPECT_EQ(layout.Anchored().size(), 20U);
}

TEST_F(AskedDialog, ThatThrowsLeavesNothingBegun) {
  const HWND anchored = child(start);
  layout.AddAnchor(anchored, TOP_RIGHT);
  layout.AddAnchorCallback(child(), 7);
  layout.callback = [](LayoutInfo&) -> BOOL { throw std::runtime_error("callback"); };
  BeginProbe begin;
  EXPECT_THROW(grow_to(400, 200), std::runtime_error);
  EXPECT_EQ(begin.calls(), 0);
  EXPECT_EQ(rect_of(anchored), start);
  layout.callback = [](LayoutInfo&) { return FALSE; };
  layout.ArrangeLayout();
  EXPECT_EQ(rect_of(anchored), moved) << "the next run is whole";
}

TEST_F(AskedDialog, ThatThrowsDuringAnEraseLeavesNothingSaved) {
  ShowWindow(parent.get(), SW_SHOWNOACTIVATE);
  layout.AddAnchorCallback(child(), 7);
  layout.callback = [](LayoutInfo&) -> BOOL { throw std::runtime_error("callback"); };
  const base::ScopedClientDc dc(parent.get());
  EXPECT_THROW(layout.ApplyEraseClipping(dc.get(), FALSE), std::runtime_error);
  EXPECT_EQ(layout.SavedClipState(), -1);
  layout.callback = [](LayoutInfo&) { return TRUE; };
  EXPECT_TRUE(layout.ApplyEraseClipping(dc.get(), FALSE));
}

/// The children act when the dialog asks them during its own initialisation.
class InitialQuestion : public DialogFixture<IDD_SIZING_BORDER> {
 protected:
  /// Opens the dialog with children that do `act` when they are asked for their properties.
  void open_asking(const std::vector<int>& items, const std::function<void(HWND child)>& act) {
    dialog.before_initialisation = [=, this] {
      for (const int id : items) {
        HWND child = dialog.item(id);
        listeners.push_back(std::make_unique<Listener>(child, when_asked(RQ_PROPERTIES, [=] { act(child); })));
      }
    };
    open();
  }

  /// The ids of the living children that are anchored.
  std::vector<int> anchored() const {
    std::vector<int> ids;
    for (std::size_t i = 0; i < dialog.Anchored().size(); ++i) {
      const HWND child = dialog.Anchored()[i].hWnd;
      if (IsWindow(child)) ids.push_back(GetDlgCtrlID(child));
    }
    return ids;
  }

  std::vector<std::unique_ptr<Listener>> listeners;
};

TEST_F(InitialQuestion, AChildThatDestroysItselfLeavesTheOthersAnchored) {
  open_asking({IDC_LIST}, [](HWND child) { DestroyWindow(child); });
  EXPECT_THAT(anchored(), testing::UnorderedElementsAre(IDC_GROUP, IDC_ADD, IDC_NEVER_ANCHORED, IDCANCEL));
}

TEST_F(InitialQuestion, AChildThatDestroysTheNextOneLeavesTheOthersAnchored) {
  open_asking({IDC_GROUP}, [this](HWND) { DestroyWindow(dialog.item(IDC_LIST)); });
  EXPECT_THAT(anchored(), testing::UnorderedElementsAre(IDC_GROUP, IDC_ADD, IDC_NEVER_ANCHORED, IDCANCEL));
  EXPECT_EQ(dialog.Anchored().size(), 4U) << "a child that is destroyed before it is visited is not recorded";
}

TEST_F(InitialQuestion, ChildrenThatComeToTheTopAreAskedOnceAndLeaveTheOthersAnchored) {
  constexpr int most_requests = 50;
  int asked = 0;
  open_asking({IDC_LIST, IDC_NEVER_ANCHORED}, [&](HWND child) {
    if (++asked < most_requests) BringWindowToTop(child);
  });
  EXPECT_EQ(asked, 2);
  EXPECT_THAT(anchored(), testing::UnorderedElementsAre(IDC_GROUP, IDC_LIST, IDC_ADD, IDC_NEVER_ANCHORED, IDCANCEL));
}

}  // namespace
}  // namespace resizable_test
