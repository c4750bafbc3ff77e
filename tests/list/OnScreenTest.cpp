#include "ListDialogTest.h"
#include "ScreenInput.h"

namespace list_test {
namespace {

using test_support::screen::click;

/// Rules 1 "AU", 2 "IF" and 3 "TF", and a user with a real keyboard and a real mouse.
class ListOnScreen : public ListDialogTest {
 protected:
  ListOnScreen() { store_rules({L"AU", L"IF", L"TF"}); }

  static POINT middle_of(const RuleList& list, int index) {
    const RECT bounds = list.bounds(index);
    return {(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
  }

  static POINT empty_space_of(const RuleList& list) {
    RECT client = {};
    GetClientRect(list.view(), &client);
    return {client.right / 2, client.bottom - 5};
  }
};

TEST_F(ListOnScreen, DoubleClickOnARuleOpensIt) {
  open([](RuleList& list) {
    EXPECT_EQ(L"TF", cancel_in_editor([&] { click(list.view(), middle_of(list, 2), 2); }));
    EXPECT_EQ(2, list.selected());
  });
}

TEST_F(ListOnScreen, ClickOnEmptySpaceClearsTheSelectionAndDisablesTheButtons) {
  open([](RuleList& list) {
    click(list.view(), empty_space_of(list));
    EXPECT_EQ(-1, list.selected());
    EXPECT_FALSE(list.can_change());
    click(list.view(), middle_of(list, 1));
    EXPECT_EQ(1, list.selected());
    EXPECT_TRUE(list.can_change());
  });
}

TEST_F(ListOnScreen, OnlyOneRuleCanBeSelected) {
  open([](RuleList& list) {
    SetFocus(list.view());
    test_support::screen::press(VK_DOWN, VK_SHIFT);
    EXPECT_EQ(1, list.send(LVM_GETSELECTEDCOUNT));
  });
}

TEST_F(ListOnScreen, RuleIsAddedAndDeletedWithTheMouseAndTheKeyboard) {
  open([](RuleList& list) {
    test_support::with_dialog([&] { click(list.item(IDC_ADD_RULE)); },
                              [](HWND editor) {
                                SetFocus(GetDlgItem(editor, IDC_NAME));
                                SendDlgItemMessageW(editor, IDC_NAME, EM_SETSEL, 0, -1);
                                test_support::screen::type(L"ZN 1");
                                test_support::screen::press(VK_RETURN);
                              });
    EXPECT_EQ(Names({L"AU", L"IF", L"TF", L"ZN 1"}), list.names());
    EXPECT_EQ(3, list.selected());
    EXPECT_EQ(list.view(), GetFocus());
    // The keyboard goes on in the list.
    test_support::screen::press(VK_UP);
    test_support::with_dialog([] { test_support::screen::press(VK_DELETE); },
                              [](HWND) { test_support::screen::press(VK_RETURN); });
    EXPECT_EQ(Names({L"AU", L"IF", L"ZN 1"}), list.names());
  });
}

}  // namespace
}  // namespace list_test
