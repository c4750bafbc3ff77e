#include "ListDialogTest.h"

namespace list_test {
namespace {

using test_support::press;
using testing::IsEmpty;
using testing::SizeIs;

/// Rules 1 "AU", 2 "IF" and 3 "TF", and a user with a real keyboard and a real mouse.
class ListInput : public ListDialogTest {
 protected:
  ListInput() { store_rules({L"AU", L"IF", L"TF"}); }

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

TEST_F(ListInput, EnterMeansEdit) {
  open([](RuleList& list) {
    SetFocus(list.view());
    press(VK_DOWN);
    EXPECT_EQ(L"IF", cancel_in_editor([] { press(VK_RETURN); }));
  });
}

TEST_F(ListInput, EnterOnAnotherButtonPressesThatOne) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              SetFocus(list.item(IDC_ADD_RULE));
              SendMessageW(list.window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list.item(IDCANCEL)), TRUE);
              press(VK_RETURN);
              EXPECT_FALSE(IsWindowVisible(list.window()));
            }));
}

TEST_F(ListInput, EscapeCloses) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              press(VK_ESCAPE);
              EXPECT_FALSE(IsWindowVisible(list.window()));
            }));
}

TEST_F(ListInput, DeleteKeyInTheListAsks) {
  open([](RuleList& list) {
    SetFocus(list.view());
    press(VK_END);
    test_support::with_dialog([] { press(VK_DELETE); }, [](HWND) { press(VK_RETURN); });
    EXPECT_EQ(Names({L"AU", L"IF"}), list.names());
    EXPECT_EQ(0, list.selected());
  });
}

TEST_F(ListInput, DeleteKeyWithoutASelectionDoesNothing) {
  host.rules().clear();
  open([&](RuleList& list) {
    SetFocus(list.view());
    host.calls().forget();
    press(VK_DELETE);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_TRUE(IsWindowEnabled(list.window()));
  });
}

TEST_F(ListInput, DeleteKeyOutsideTheListDoesNothing) {
  open([&](RuleList& list) {
    SetFocus(list.item(IDC_ADD_RULE));
    host.calls().forget();
    press(VK_DELETE);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(3, list.count());
  });
}

TEST_F(ListInput, DoubleClickOnARuleOpensIt) {
  open([](RuleList& list) {
    EXPECT_EQ(L"TF", cancel_in_editor([&] { test_support::click(list.view(), middle_of(list, 2), 2); }));
    EXPECT_EQ(2, list.selected());
  });
}

TEST_F(ListInput, DoubleClickOnEmptySpaceDoesNothing) {
  open([&](RuleList& list) {
    host.calls().forget();
    test_support::click(list.view(), empty_space_of(list), 2);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_TRUE(IsWindowEnabled(list.window()));
  });
}

TEST_F(ListInput, ClickOnEmptySpaceTakesTheSelectionAndTheButtonsAway) {
  open([](RuleList& list) {
    test_support::click(list.view(), empty_space_of(list));
    EXPECT_EQ(-1, list.selected());
    EXPECT_FALSE(list.can_change());
    test_support::click(list.view(), middle_of(list, 1));
    EXPECT_EQ(1, list.selected());
    EXPECT_TRUE(list.can_change());
  });
}

TEST_F(ListInput, ArrowsMoveTheSelection) {
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

TEST_F(ListInput, OnlyOneRuleCanBeSelected) {
  open([](RuleList& list) {
    SetFocus(list.view());
    press(VK_DOWN, VK_SHIFT);
    EXPECT_EQ(1, list.send(LVM_GETSELECTEDCOUNT));
  });
}

TEST_F(ListInput, RuleIsAddedWithTheMouseAndTheKeyboard) {
  open([](RuleList& list) {
    test_support::with_dialog([&] { test_support::click(list.item(IDC_ADD_RULE)); },
                              [](HWND editor) {
                                SetFocus(GetDlgItem(editor, IDC_NAME));
                                SendDlgItemMessageW(editor, IDC_NAME, EM_SETSEL, 0, -1);
                                test_support::type(L"ZN 1");
                                press(VK_RETURN);
                              });
    EXPECT_EQ(Names({L"AU", L"IF", L"TF", L"ZN 1"}), list.names());
    EXPECT_EQ(3, list.selected());
    EXPECT_EQ(list.view(), GetFocus());
    // The keyboard goes on in the list.
    press(VK_UP);
    EXPECT_EQ(2, list.selected());
  });
  EXPECT_THAT(host.rules(), SizeIs(4));
}

TEST_F(ListInput, FocusIsInTheListAfterADelete) {
  open([](RuleList& list) {
    SetFocus(list.view());
    test_support::with_dialog([] { press(VK_DELETE); }, [](HWND) { press(VK_RETURN); });
    EXPECT_EQ(list.view(), GetFocus());
  });
}

}  // namespace
}  // namespace list_test
