#include <gmock/gmock.h>

#include "ChildLayout.h"
#include "TestWindows.h"

namespace resizable_test {
namespace {

using namespace resizable;

constexpr RECT old_rect{1, 2, 3, 4};
constexpr RECT new_rect{5, 6, 70, 80};

class ChildProtocol : public testing::Test {
 protected:
  ChildProtocol() { RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT(); }

  /// The child handles a question: `write` fills the record at lParam, and the message returns non-zero.
  template <class Record>
  void answer(WPARAM question, std::function<void(Record&)> write) {
    answers[question] = [write](LPARAM record) { write(*reinterpret_cast<Record*>(record)); };
  }

  LayoutInfo measured() { return measured_child(parent.get(), child, TOP_LEFT, NOANCHOR); }

  OwnedWindow parent{make_popup()};
  HWND child = make_child(parent.get(), L"Static", {10, 20, 60, 40});
  std::map<WPARAM, std::function<void(LPARAM)>> answers;
  bool answers_count = true;
  std::vector<WPARAM> asked;
  Listener listener{child, [this](UINT message, WPARAM question, LPARAM record, LRESULT& result) {
                      if (message != WMU_RESIZESUPPORT) return false;
                      asked.push_back(question);
                      const auto found = answers.find(question);
                      if (found != answers.end()) found->second(record);
                      result = answers_count && found != answers.end();
                      return true;
                    }};
};

TEST_F(ChildProtocol, OffersBothQuestionsAsPropertiesAndTakesWhatTheChildWrites) {
  answer<ChildResizeFlags>(RQ_PROPERTIES, [](ChildResizeFlags& flags) {
    EXPECT_EQ(flags.ask_clipping, TRUE);
    EXPECT_EQ(flags.ask_refresh, TRUE);
    flags = {FALSE, FALSE, TRUE, TRUE};
  });
  const LayoutInfo info = measured();
  EXPECT_EQ(info.message_support, TRUE);
  EXPECT_EQ(info.resize_flags.ask_clipping, FALSE);
  EXPECT_EQ(info.resize_flags.ask_refresh, FALSE);
  EXPECT_EQ(info.resize_flags.likes_clipping, TRUE);
  EXPECT_EQ(info.resize_flags.needs_refresh, TRUE);
  EXPECT_THAT(asked, testing::ElementsAre(RQ_PROPERTIES));
}

TEST_F(ChildProtocol, IgnoresWhatAChildWritesThatDoesNotAnswer) {
  answer<ChildResizeFlags>(RQ_PROPERTIES, [](ChildResizeFlags& flags) { flags = {TRUE, FALSE, FALSE, TRUE}; });
  answers_count = false;
  const LayoutInfo info = measured();
  EXPECT_EQ(info.message_support, FALSE);
  EXPECT_EQ(info.resize_flags.ask_clipping, FALSE);
  EXPECT_EQ(info.resize_flags.likes_clipping, TRUE);
  EXPECT_EQ(info.resize_flags.ask_refresh, TRUE);
}

TEST_F(ChildProtocol, CachedAnswersAreTakenWithoutAsking) {
  answer<ChildResizeFlags>(RQ_PROPERTIES, [](ChildResizeFlags& flags) { flags = {FALSE, FALSE, FALSE, TRUE}; });
  const LayoutInfo info = measured();
  EXPECT_FALSE(likes_clipping(info));
  EXPECT_TRUE(needs_refresh(info, old_rect, new_rect));
  EXPECT_THAT(asked, testing::ElementsAre(RQ_PROPERTIES));
}

TEST_F(ChildProtocol, AsksAtEachUseWhenTheChildWantsThat) {
  answer<ChildResizeFlags>(RQ_PROPERTIES, [](ChildResizeFlags&) {});
  BOOL likes = TRUE;
  answer<BOOL>(RQ_CLIPPING, [&](BOOL& clipping) {
    EXPECT_EQ(clipping, FALSE) << "preset";
    clipping = likes;
  });
  const LayoutInfo info = measured();
  EXPECT_TRUE(likes_clipping(info));
  likes = FALSE;
  EXPECT_FALSE(likes_clipping(info));
  EXPECT_THAT(asked, testing::ElementsAre(RQ_PROPERTIES, RQ_CLIPPING, RQ_CLIPPING));
}

TEST_F(ChildProtocol, PassesBothRectanglesWhenItAsksForARepaint) {
  answer<ChildResizeFlags>(RQ_PROPERTIES, [](ChildResizeFlags&) {});
  BOOL repaint = FALSE;
  answer<RepaintQuery>(RQ_REPAINT, [&](RepaintQuery& query) {
    EXPECT_EQ(query.repaint, TRUE) << "preset";
    EXPECT_EQ(query.old_rect, old_rect);
    EXPECT_EQ(query.new_rect, new_rect);
    query.repaint = repaint;
  });
  const LayoutInfo info = measured();
  EXPECT_FALSE(needs_refresh(info, old_rect, new_rect));
  repaint = TRUE;
  EXPECT_TRUE(needs_refresh(info, old_rect, new_rect));
}

TEST_F(ChildProtocol, FallsBackToTheWindowClassWhenAQuestionIsNotAnswered) {
  answer<ChildResizeFlags>(RQ_PROPERTIES, [](ChildResizeFlags&) {});
  const LayoutInfo info = measured();
  EXPECT_TRUE(likes_clipping(info));
  EXPECT_FALSE(needs_refresh(info, old_rect, new_rect));
}

TEST_F(ChildProtocol, AChildWithoutSupportNeverNeedsARefresh) {
  const LayoutInfo info = measured();
  asked.clear();
  EXPECT_FALSE(needs_refresh(info, old_rect, old_rect));
  EXPECT_FALSE(needs_refresh(info, old_rect, new_rect));
  EXPECT_FALSE(must_repaint(info, old_rect, new_rect));
  EXPECT_TRUE(asked.empty());
}

}  // namespace
}  // namespace resizable_test
