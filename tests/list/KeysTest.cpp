#include "Input.h"
#include "ListDialogTest.h"

namespace list_test {
namespace {

using test_support::press;
using testing::IsEmpty;

/// Rules 1 "AU", 2 "IF" and 3 "TF", and a user of the keyboard.
class ListKeys : public ListDialogTest {
 protected:
  ListKeys() { store_rules({L"AU", L"IF", L"TF"}); }

  /// Opens the list, puts the focus on one of its controls and expects that `keys` ask the host for nothing.
  void expect_nothing(int focused, const std::function<void(RuleList&)>& keys) {
    open([&](RuleList& list) {
      SetFocus(list.item(focused));
      const int selected = list.selected();
      host.calls().forget();
      keys(list);
      EXPECT_THAT(calls(), IsEmpty());
      EXPECT_EQ(selected, list.selected());
      EXPECT_TRUE(IsWindowEnabled(list.window()));
    });
  }
};

TEST_F(ListKeys, EnterMeansEdit) {
  open([](RuleList& list) {
    SetFocus(list.view());
    press(VK_DOWN);
    EXPECT_EQ(L"IF", cancel_in_editor([] { press(VK_RETURN); }));
  });
}

TEST_F(ListKeys, EnterOnAnotherButtonPressesThatOne) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              SetFocus(list.item(IDC_ADD_RULE));
              SendMessageW(list.window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list.item(IDCANCEL)), TRUE);
              press(VK_RETURN);
              EXPECT_FALSE(IsWindowVisible(list.window()));
            }));
}

TEST_F(ListKeys, EscapeCloses) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              SetFocus(list.view());
              press(VK_ESCAPE);
              EXPECT_FALSE(IsWindowVisible(list.window()));
            }));
}

TEST_F(ListKeys, DeleteAsksAsTheButtonDoesAndKeepsTheFocusInTheList) {
  open([](RuleList& list) {
    SetFocus(list.view());
    press(VK_END);
    test_support::with_message_box([] { press(VK_DELETE); }, IDYES);
    EXPECT_EQ(Names({L"AU", L"IF"}), list.names());
    EXPECT_EQ(0, list.selected());
    EXPECT_EQ(list.view(), GetFocus());
  });
}

TEST_F(ListKeys, DeleteOutsideTheListDoesNothing) {
  expect_nothing(IDC_ADD_RULE, [](RuleList&) { press(VK_DELETE); });
}

TEST_F(ListKeys, OthersDoNothing) {
  expect_nothing(IDC_RULES_LIST, [](RuleList& list) {
    for (const int key : {VK_BACK, VK_INSERT, VK_F2, VK_RETURN, VK_SPACE, VK_DECIMAL}) {
      list.key_down(static_cast<WORD>(key));
    }
  });
}

TEST_F(ListKeys, ArrowsMoveTheSelection) {
  open([](RuleList& list) {
    SetFocus(list.view());
    press(VK_DOWN);
    press(VK_DOWN);
    EXPECT_EQ(2, list.selected());
    press(VK_UP);
    EXPECT_EQ(1, list.selected());
    EXPECT_EQ(1, list.send(LVM_GETSELECTEDCOUNT));
    EXPECT_TRUE(list.can_change());
  });
}

}  // namespace
}  // namespace list_test
