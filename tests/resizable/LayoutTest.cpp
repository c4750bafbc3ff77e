#include <gmock/gmock.h>

#include <climits>
#include <optional>

#include "ImportProbe.h"
#include "LayoutWindow.h"

ZD_IMPORT_PROBE(BeginDeferWindowPos, BeginProbe);
ZD_IMPORT_PROBE(DeferWindowPos, DeferProbe);
ZD_IMPORT_PROBE(EndDeferWindowPos, EndProbe);

namespace resizable_test {
namespace {

/// Records what each child's move is given, and lets it happen.
class MoveRecorder {
 public:
  MoveRecorder() {
    probe_.replace([this](HDWP batch, HWND window, HWND after, int x, int y, int cx, int cy, UINT given) {
      windows.push_back(window);
      flags.push_back(given);
      return probe_.original(batch, window, after, x, y, cx, cy, given);
    });
  }

  std::vector<HWND> windows;
  std::vector<UINT> flags;

 private:
  DeferProbe probe_;
};

TEST_F(AnchorLayout, WithoutASecondAnchorTheChildKeepsSizeAndPosition) {
  const HWND edit = child();
  layout.AddAnchor(edit, TOP_LEFT);
  for (const CSize size : {CSize(400, 300), CSize(20, 10), CSize(0, 0), CSize(301, 201)}) {
    grow_to(size.cx, size.cy);
    EXPECT_EQ(rect_of(edit), (RECT{10, 20, 60, 40}));
  }
}

TEST_F(AnchorLayout, BetweenOppositeCornersTheChildGrowsWithTheDialog) {
  const HWND edit = child();
  layout.AddAnchor(edit, TOP_LEFT, BOTTOM_RIGHT);
  grow_to(337, 251);
  EXPECT_EQ(rect_of(edit), (RECT{10, 20, 97, 91}));
  grow_to(300, 200);
  EXPECT_EQ(rect_of(edit), (RECT{10, 20, 60, 40}));
}

TEST_F(AnchorLayout, AnchoringTwiceLeavesOneRecordWithTheSecondAnchors) {
  const HWND first = child();
  const HWND second = child({70, 20, 90, 40});
  layout.AddAnchor(first, TOP_LEFT);
  layout.AddAnchor(second, TOP_LEFT);
  layout.AddAnchor(first, TOP_RIGHT, BOTTOM_RIGHT);
  ASSERT_EQ(layout.Anchored().size(), 2U);
  EXPECT_EQ(layout.Anchored()[0].hWnd, first) << "replaced in its place";
  EXPECT_EQ(layout.Anchored()[0].top_left.anchor, TOP_RIGHT);
  EXPECT_EQ(layout.Anchored()[0].bottom_right.anchor, BOTTOM_RIGHT);
  grow_to(350, 200);
  EXPECT_EQ(rect_of(first), (RECT{60, 20, 110, 40}));
}

TEST_F(AnchorLayout, MarginsAreMeasuredWhenTheAnchorIsAdded) {
  const HWND edit = child({240, 170, 290, 190});
  layout.AddAnchor(edit, BOTTOM_RIGHT);
  MoveWindow(edit, 0, 0, 5, 5, FALSE);
  grow_to(300, 200);
  EXPECT_EQ(rect_of(edit), (RECT{240, 170, 290, 190}));
}

TEST_F(AnchorLayout, RecordsTheWindowClassAndAsksAChildThatDoesNotAnswerOnlyOnce) {
  const HWND edit = child();
  layout.AddAnchor(edit, TOP_LEFT);
  const LayoutInfo info = layout.Anchored()[0];
  EXPECT_STREQ(info.class_name, L"Edit");
  EXPECT_EQ(info.callback_id, 0U);
  EXPECT_EQ(info.message_support, FALSE);
  EXPECT_EQ(info.resize_flags.ask_clipping, FALSE);
  EXPECT_EQ(info.resize_flags.likes_clipping, TRUE);
  EXPECT_EQ(info.resize_flags.ask_refresh, TRUE);
}

TEST_F(AnchorLayout, WithoutAnchorsNothingIsBegun) {
  const HWND edit = child();
  BeginProbe begin;
  grow_to(400, 300);
  EXPECT_EQ(begin.calls(), 0);
  EXPECT_EQ(rect_of(edit), (RECT{10, 20, 60, 40}));
}

TEST_F(AnchorLayout, MovesAllChildrenInOneBatchAndPassesOverThoseThatStay) {
  layout.AddAnchor(child(), TOP_LEFT);
  layout.AddAnchor(child(), TOP_RIGHT);
  layout.AddAnchor(child(), TOP_LEFT, BOTTOM_RIGHT);
  std::vector<int> sizes;
  BeginProbe begin;
  begin.replace([&](int count) { return sizes.push_back(count), begin.original(count); });
  DeferProbe defer;
  EndProbe end;
  grow_to(400, 300);
  EXPECT_THAT(sizes, testing::ElementsAre(3)) << "one batch, sized to the records";
  EXPECT_EQ(defer.calls(), 2);
  EXPECT_EQ(end.calls(), 1);
}

TEST_F(AnchorLayout, NamesWhatStaysOfAMovedChild) {
  layout.AddAnchor(child(), TOP_RIGHT);
  layout.AddAnchor(child(), TOP_LEFT, BOTTOM_RIGHT);
  const MoveRecorder moves;
  grow_to(400, 300);
  EXPECT_THAT(moves.flags, testing::ElementsAre(0x214U | SWP_NOSIZE, 0x214U | SWP_NOMOVE));
}

TEST_F(AnchorLayout, AChildThatAsksForARepaintKeepsNoneOfItsPicture) {
  const HWND edit = child();
  RepaintQuery asked{};
  Listener listener(edit, [&](UINT message, WPARAM question, LPARAM record, LRESULT& result) {
    if (message != WMU_RESIZESUPPORT) return false;
    if (question == RQ_REPAINT) asked = *reinterpret_cast<const RepaintQuery*>(record);
    result = TRUE;
    return true;
  });
  layout.AddAnchor(edit, TOP_RIGHT);
  const MoveRecorder moves;
  grow_to(400, 300);
  EXPECT_THAT(moves.flags, testing::ElementsAre(0x314U | SWP_NOSIZE));
  EXPECT_EQ(asked.old_rect, (RECT{10, 20, 60, 40})) << "where it was in the dialog";
  EXPECT_EQ(asked.new_rect, (RECT{110, 20, 160, 40}));
  EXPECT_EQ(rect_of(edit), asked.new_rect);
}

TEST_F(AnchorLayout, ZeroAndVeryLargeSizesBringTheChildrenBack) {
  const HWND edit = child();
  layout.AddAnchor(edit, MIDDLE_CENTER, BOTTOM_RIGHT);
  grow_to(0, 0);
  grow_to(30000, 30000);
  grow_to(300, 200);
  EXPECT_EQ(rect_of(edit), (RECT{10, 20, 60, 40}));
}

TEST_F(AnchorLayout, ClearedAnchorsMoveNothingAnyMore) {
  const HWND edit = child();
  layout.AddAnchor(edit, TOP_RIGHT);
  layout.AddAnchorCallback(edit, 7);
  layout.ClearAnchors();
  BeginProbe begin;
  grow_to(400, 300);
  EXPECT_EQ(begin.calls(), 0);
}

class DestroyedChild : public AnchorLayout {
 protected:
  DestroyedChild() {
    for (const HWND window : {first, destroyed, last}) layout.AddAnchor(window, TOP_RIGHT);
    DestroyWindow(destroyed);
  }

  HWND first = child({10, 20, 30, 40});
  HWND destroyed = child({40, 20, 60, 40});
  HWND last = child({70, 20, 90, 40});
};

TEST_F(DestroyedChild, IsNotPassedToTheBatchAndLeavesTheOthersMoving) {
  const MoveRecorder moves;
  grow_to(400, 200);
  EXPECT_EQ(moves.windows, (std::vector<HWND>{first, last}));
  EXPECT_EQ(rect_of(first), (RECT{110, 20, 130, 40}));
  EXPECT_EQ(rect_of(last), (RECT{170, 20, 190, 40}));
}

class LostBatch : public AnchorLayout {
 protected:
  LostBatch() {
    for (const HWND window : children) layout.AddAnchor(window, TOP_RIGHT);
  }

  void expect_all_moved() {
    grow_to(400, 200);
    EXPECT_EQ(rect_of(children[0]), (RECT{110, 20, 130, 40}));
    EXPECT_EQ(rect_of(children[1]), (RECT{140, 20, 160, 40}));
    EXPECT_EQ(rect_of(children[2]), (RECT{170, 20, 190, 40}));
  }

  HWND children[3] = {child({10, 20, 30, 40}), child({40, 20, 60, 40}), child({70, 20, 90, 40})};
};

TEST_F(LostBatch, AtItsBeginningStillMovesEveryChild) {
  BeginProbe begin;
  begin.fail(0, nullptr);
  expect_all_moved();
}

TEST_F(LostBatch, AtAnyChildStillMovesEveryChild) {
  for (int number = 1; number <= 3; ++number) {
    DeferProbe defer;
    EndProbe end;
    defer.fail(number, nullptr);
    expect_all_moved();
    EXPECT_EQ(end.calls(), 0) << "a lost batch must not be ended";
    grow_to(300, 200);
  }
}

TEST_F(LostBatch, AtItsEndStillMovesEveryChild) {
  EndProbe end;
  end.fail(0, FALSE);
  expect_all_moved();
}

class CallbackLayout : public AnchorLayout {};

TEST_F(CallbackLayout, TakesWhatTheDialogGives) {
  const HWND edit = child();
  layout.AddAnchorCallback(edit, 7);
  std::optional<LayoutInfo> asked;
  layout.callback = [&](LayoutInfo& info) {
    asked = info;
    info.top_left = {TOP_RIGHT, {-50, 5}};
    info.bottom_right = {BOTTOM_RIGHT, {-5, -5}};
    return TRUE;
  };
  grow_to(400, 300);
  ASSERT_TRUE(asked);
  EXPECT_EQ(asked->hWnd, edit);
  EXPECT_EQ(asked->callback_id, 7U);
  EXPECT_EQ(rect_of(edit), (RECT{350, 5, 395, 295}));
}

TEST_F(CallbackLayout, LeavesTheChildAloneWhenTheDialogReturnsFalse) {
  const HWND edit = child();
  layout.AddAnchorCallback(edit, 7);
  layout.callback = [](LayoutInfo& info) {
    info.top_left = info.bottom_right = {TOP_RIGHT, {}};
    return FALSE;
  };
  grow_to(400, 300);
  EXPECT_EQ(rect_of(edit), (RECT{10, 20, 60, 40}));
}

TEST_F(CallbackLayout, ComesAfterTheAnchoredChildren) {
  layout.AddAnchorCallback(child(), 7);
  const HWND anchored = child();
  layout.AddAnchor(anchored, TOP_RIGHT);
  layout.callback = [](LayoutInfo& info) { return info.top_left.anchor = BOTTOM_LEFT, TRUE; };
  const MoveRecorder moves;
  grow_to(400, 300);
  ASSERT_EQ(moves.windows.size(), 2U);
  EXPECT_EQ(moves.windows[0], anchored);
}

TEST_F(CallbackLayout, TheBatchHasRoomForChildrenOfBothKinds) {
  layout.AddAnchor(child(), TOP_RIGHT);
  layout.AddAnchorCallback(child(), 7);
  layout.AddAnchorCallback(child(), 8);
  layout.callback = [](LayoutInfo&) { return FALSE; };
  std::vector<int> sizes;
  BeginProbe begin;
  begin.replace([&](int count) { return sizes.push_back(count), begin.original(count); });
  grow_to(400, 300);
  EXPECT_THAT(sizes, testing::ElementsAre(3));
}

TEST_F(CallbackLayout, MayClearTheLayoutWhileItIsAsked) {
  layout.AddAnchorCallback(child(), 7);
  layout.AddAnchorCallback(child(), 8);
  int asked = 0;
  layout.callback = [&](LayoutInfo&) {
    ++asked;
    layout.ClearAnchors();
    return TRUE;
  };
  grow_to(400, 300);
  EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace resizable_test
