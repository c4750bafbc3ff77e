#include "Input.h"
#include "ListDialogTest.h"

namespace list_test {
namespace {

using testing::ElementsAre;

constexpr int buttons[] = {IDCANCEL, IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE};

/// An empty storage, so that a button opens no message box.
class ListMessages : public ListDialogTest {};

// Those that are handled have tests of what they do.
TEST_F(ListMessages, OthersAreNotHandled) {
  open([](RuleList& list) {
    for (const int id : buttons) {
      for (const int code : {BN_PAINT, BN_DISABLE, BN_DOUBLECLICKED, BN_SETFOCUS, BN_KILLFOCUS, 0xFFFF}) {
        EXPECT_FALSE(list.handles_command(id, static_cast<WORD>(code))) << id << ", " << code;
      }
    }
    for (const int id : {0, IDOK, IDABORT, IDC_RULES_LIST, IDC_RULES_GROUP, 206, 0xFFFF}) {
      EXPECT_FALSE(list.handles_command(id, BN_CLICKED)) << id;
    }
    for (const UINT code : {NM_CLICK, NM_RETURN, NM_RCLICK, NM_RDBLCLK, NM_SETFOCUS, NM_KILLFOCUS, LVN_ITEMCHANGING,
                            LVN_INSERTITEM, LVN_DELETEITEM, LVN_DELETEALLITEMS, LVN_ITEMACTIVATE, LVN_COLUMNCLICK}) {
      EXPECT_FALSE(list.handles_notification(IDC_RULES_LIST, code)) << code;
    }
    for (const UINT_PTR id : {0, IDC_ADD_RULE, IDC_RULES_GROUP}) {
      for (const UINT code : {NM_DBLCLK, LVN_KEYDOWN, LVN_ITEMCHANGED}) {
        EXPECT_FALSE(list.handles_notification(id, code)) << id << ", " << code;
      }
    }
    for (const UINT message :
         {WM_NULL, WM_CLOSE, WM_ENDSESSION, WM_KEYDOWN, WM_TIMER, WM_VSCROLL, WM_NOTIFY, WM_USER, WM_APP}) {
      EXPECT_FALSE(list.handles(message, 0, 0)) << message;
    }
  });
}

TEST_F(ListMessages, SizeIsLeftToTheDefaultWithResultZero) {
  open([](RuleList& list) {
    LRESULT result = -1;
    EXPECT_FALSE(list.dialog().ProcessWindowMessage(list.window(), WM_SIZE, SIZE_RESTORED, 0, result));
    EXPECT_EQ(0, result);
  });
}

TEST_F(ListMessages, OtherMapIsReportedAndHandlesNothing) {
  open([&](RuleList& list) {
    LRESULT result = -1;
    EXPECT_FALSE(
        list.dialog().ProcessWindowMessage(list.window(), WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0, result, 1));
    EXPECT_EQ(-1, result);
    EXPECT_TRUE(IsWindowVisible(list.window()));
  });
  EXPECT_THAT(reports(), ElementsAre("ASSERT 0 | ExpirationRulesListDialog.h:51 ProcessWindowMessage"));
}

/// Sends a message that asks the dialog to close, which the system may turn into a posted one.
void ask_to_close(HWND dialog, UINT message, WPARAM wParam) {
  SendMessageW(dialog, message, wParam, 0);
  test_support::settle();
  EXPECT_FALSE(IsWindowVisible(dialog));
}

TEST_F(ListMessages, CloseBoxEndsTheDialogAsCloseDoes) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) { ask_to_close(list.window(), WM_CLOSE, 0); }));
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) { ask_to_close(list.window(), WM_SYSCOMMAND, SC_CLOSE); }));
}

}  // namespace
}  // namespace list_test
