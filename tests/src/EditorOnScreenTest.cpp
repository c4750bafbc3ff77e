#include "EditorTest.h"
#include "ScreenInput.h"

namespace editor_test {
namespace {

using test_support::screen::click;
using test_support::screen::press;
using test_support::screen::type;

/// A user with a real keyboard and a real mouse.
class EditorOnScreen : public EditorTest {
 protected:
  static void replace(const Editor& editor, int edit, const std::wstring& text) {
    SetFocus(editor.item(edit));
    SendDlgItemMessageW(editor.window(), edit, EM_SETSEL, 0, -1);
    type(text);
  }

  static void choose(const Editor& editor, int combo, int index) {
    SetFocus(editor.item(combo));
    press(VK_HOME);
    for (int step = 0; step < index; ++step) press(VK_DOWN);
  }

  static void click_spin(const Editor& editor, LONG quarters_from_top) {
    RECT area = {};
    GetClientRect(editor.item(IDC_OFFSET_SPIN), &area);
    click(editor.item(IDC_OFFSET_SPIN), {area.right / 2, area.bottom * quarters_from_top / 4});
  }
};

TEST_F(EditorOnScreen, WholeRuleIsEnteredWithTheKeyboardAndTheMouse) {
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              replace(editor, IDC_NAME, L"IF 2");
              replace(editor, IDC_OFFSET, L"12");
              choose(editor, IDC_DAY_OF_MONTH, 30);
              choose(editor, IDC_DAY_MONTH, 0);
              click(editor.item(IDC_WEEKDAY_MODE));
              choose(editor, IDC_WEEK_ORDINAL, 4);
              choose(editor, IDC_WEEKDAY, 6);
              choose(editor, IDC_WEEKDAY_MONTH, 2);
              click(editor.item(IDC_MOVE_TO_NEXT_TRADING_DAY));
              click(editor.item(IDOK));
            }));
  EXPECT_EQ((HostRule{stored_id, L"IF 2", 12, 0, 1, 31, 0, 5, 6, 2, 1}), rule());
}

TEST_F(EditorOnScreen, OffsetTakesDigitsClicksAndArrows) {
  rule().roll_offset = 5;
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              replace(editor, IDC_OFFSET, L"-a .971");
              EXPECT_EQ(L"97", editor.text(IDC_OFFSET));
              EXPECT_EQ(97, editor.spin());
              for (int count = 0; count < 3; ++count) click_spin(editor, 1);
              EXPECT_EQ(L"99", editor.text(IDC_OFFSET));
              click_spin(editor, 3);
              SetFocus(editor.item(IDC_OFFSET));
              press(VK_DOWN);
              EXPECT_EQ(L"97", editor.text(IDC_OFFSET));
              press(VK_END);
              press(VK_BACK);
              press(VK_BACK);
              EXPECT_EQ(L"", editor.text(IDC_OFFSET));
              press(VK_RETURN);
            }));
  EXPECT_EQ(0, rule().roll_offset);
}

TEST_F(EditorOnScreen, NothingIsPastedIntoTheOffset) {
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  constexpr wchar_t content[] = L"7";
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof content);
  memcpy(GlobalLock(memory), content, sizeof content);
  GlobalUnlock(memory);
  SetClipboardData(CF_UNICODETEXT, memory);
  CloseClipboard();
  rule().roll_offset = 5;
  edit([](Editor& editor) {
    SetFocus(editor.item(IDC_OFFSET));
    SendDlgItemMessageW(editor.window(), IDC_OFFSET, EM_SETSEL, 0, -1);
    press(L'V', VK_CONTROL);
    EXPECT_EQ(L"5", editor.text(IDC_OFFSET));
    press(VK_ESCAPE);
  });
}

}  // namespace
}  // namespace editor_test
