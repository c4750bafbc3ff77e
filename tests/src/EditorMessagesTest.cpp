#include "EditorTest.h"

namespace editor_test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class EditorMessages : public EditorTest {};

// Those that are handled have tests of what they do.
TEST_F(EditorMessages, OthersAreNotHandled) {
  edit([](Editor& editor) {
    for (const int id : {IDC_DAY_OF_MONTH_MODE, IDC_WEEKDAY_MODE, IDC_MOVE_TO_NEXT_TRADING_DAY, IDOK, IDCANCEL}) {
      for (const int code : {BN_DOUBLECLICKED, BN_SETFOCUS}) EXPECT_FALSE(editor.handles_command(id, code)) << id;
    }
    for (const int id : combos) {
      for (const int code : {CBN_DBLCLK, CBN_SETFOCUS, CBN_KILLFOCUS, CBN_DROPDOWN, CBN_CLOSEUP, CBN_SELENDOK}) {
        EXPECT_FALSE(editor.handles_command(id, code)) << id << " " << code;
      }
    }
    for (const int id : {IDC_NAME, IDC_OFFSET}) {
      for (const int code : {EN_CHANGE, EN_UPDATE, EN_MAXTEXT}) EXPECT_FALSE(editor.handles_command(id, code)) << id;
    }
    EXPECT_FALSE(editor.handles_command(IDC_DESCRIPTION, STN_CLICKED));
    EXPECT_FALSE(editor.handles_command(999, BN_CLICKED));
    for (const UINT message : {WM_SIZE, WM_TIMER, WM_NOTIFY, WM_CLOSE, WM_USER + 6, WM_USER + 8, WM_NULL}) {
      EXPECT_FALSE(editor.handles(message, 0, 0)) << message;
    }
    EXPECT_TRUE(IsWindowVisible(editor.window()));
  });
}

TEST_F(EditorMessages, AnotherMessageMapIsAnAssertion) {
  edit([](Editor& editor) {
    LRESULT result = 0;
    EXPECT_FALSE(editor.dialog().ProcessWindowMessage(editor.window(), WM_COMMAND, IDOK, 0, result, 1));
    EXPECT_THAT(reports(), ElementsAre(StartsWith("ASSERT")));
    EXPECT_TRUE(IsWindowVisible(editor.window()));
  });
}

TEST_F(EditorMessages, OfADestroyedOffsetEditDoNoHarm) {
  edit([](Editor& editor) {
    DestroyWindow(editor.item(IDC_OFFSET));
    SendMessageW(editor.window(), WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, 3),
                 reinterpret_cast<LPARAM>(editor.item(IDC_OFFSET_SPIN)));
    SendMessageW(editor.window(), WM_USER + 7, 0, 0);
    EXPECT_TRUE(IsWindowVisible(editor.window()));
  });
  EXPECT_THAT(reports(), testing::Contains(StartsWith("ASSERT ::IsWindow(m_hWnd) | ")));
}

TEST_F(EditorMessages, OfADestroyedComboAreAssertedAndSaveMinusOne) {
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              DestroyWindow(editor.item(IDC_WEEKDAY));
              editor.ok();
            }));
  EXPECT_EQ(-1, host.saves().back().weekday);
  EXPECT_THAT(reports(), testing::Contains(StartsWith("ASSERT ::IsWindow(Combo.m_hWnd) | ")));
}

TEST_F(EditorMessages, EndingIsSafeWhenTheWindowIsDestroyedFromOutside) {
  CEditExpirationRuleDialog dialog(&block, stored_id);
  test_support::with_dialog([&] { dialog.DoModal(nullptr); }, [](HWND window) { DestroyWindow(window); });
  EXPECT_EQ(nullptr, dialog.m_hWnd);
}

TEST_F(EditorMessages, DialogCanBeShownTwiceAndItsFontIsCreatedOnlyOnce) {
  CEditExpirationRuleDialog dialog(&block, stored_id);
  for (int round = 0; round < 2; ++round) {
    test_support::with_dialog([&] { dialog.DoModal(nullptr); }, [&](HWND window) { Editor(window, dialog).cancel(); });
  }
  EXPECT_THAT(reports(), ElementsAre("ASSERT m_hFont == 0 | EditExpirationRuleDialog.cpp:* prepare_description"));
}

}  // namespace
}  // namespace editor_test
