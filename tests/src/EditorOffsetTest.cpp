#include "EditorTest.h"
#include "Input.h"

namespace editor_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::wstring sentence_with_offset(const std::wstring& offset) {
  return sentence(offset, L"交易日", day_piece, L"前一个");
}

class EditorOffset : public EditorTest {
 protected:
  /// Edits the stored rule, which starts with `offset`, and saves.
  void save_from(long offset, const std::function<void(Editor&)>& act) {
    rule().roll_offset = offset;
    EXPECT_EQ(IDOK, edit([&](Editor& editor) {
                act(editor);
                editor.ok();
              }));
  }

  static void expect_offset(const Editor& editor, const std::wstring& text, short position) {
    EXPECT_EQ(text, editor.text(IDC_OFFSET));
    EXPECT_EQ(position, editor.spin());
    EXPECT_EQ(sentence_with_offset(text), editor.description());
  }
};

TEST_F(EditorOffset, SevenTypedAfterNineGives97AndAThirdCharacterIsRefused) {
  save_from(0, [](Editor& editor) {
    editor.enter(IDC_OFFSET, L"9");
    expect_offset(editor, L"9", 9);
    test_support::type(L"7");
    expect_offset(editor, L"97", 97);
    test_support::type(L"1");
    expect_offset(editor, L"97", 97);
  });
  EXPECT_EQ(97, rule().roll_offset);
}

TEST_F(EditorOffset, OnlyDigitsCanBeTyped) {
  save_from(5, [](Editor& editor) {
    editor.enter(IDC_OFFSET, L"-");
    test_support::type(L"a .");
    test_support::type(L"3");
    expect_offset(editor, L"3", 3);
  });
  EXPECT_EQ(3, rule().roll_offset);
}

TEST_F(EditorOffset, ClearingItMovesTheSpinTo0LeavesItEmptyAndSaves0) {
  save_from(5, [](Editor& editor) {
    editor.enter(IDC_OFFSET, L"");
    expect_offset(editor, L"", 0);
  });
  EXPECT_EQ(0, rule().roll_offset);
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorOffset, ClearedWithTheBackspaceKeyStaysEmpty) {
  save_from(42, [](Editor& editor) {
    SetFocus(editor.item(IDC_OFFSET));
    test_support::press(VK_END);
    test_support::press(VK_BACK);
    expect_offset(editor, L"4", 4);
    test_support::press(VK_BACK);
    expect_offset(editor, L"", 0);
  });
  EXPECT_EQ(0, rule().roll_offset);
}

TEST_F(EditorOffset, TypingRewritesNothing) {
  save_from(5, [](Editor& editor) {
    editor.enter(IDC_OFFSET, L"0");
    expect_offset(editor, L"0", 0);
    test_support::type(L"7");
    expect_offset(editor, L"07", 7);
  });
  EXPECT_EQ(7, rule().roll_offset);
}

TEST_F(EditorOffset, TypingLeavesTheCaretBehindTheTypedCharacter) {
  save_from(5, [](Editor& editor) {
    SetFocus(editor.item(IDC_OFFSET));
    test_support::press(VK_HOME);
    test_support::type(L"1");
    expect_offset(editor, L"15", 15);
    EXPECT_EQ(1u, editor.caret(IDC_OFFSET));
  });
}

TEST_F(EditorOffset, EditingWithoutAKeyMovesTheSpinAndTheDescription) {
  edit([](Editor& editor) {
    HWND offset = editor.item(IDC_OFFSET);
    const auto select_all = [&] { SendMessageW(offset, EM_SETSEL, 0, -1); };
    for (const UINT removing : {WM_CUT, WM_CLEAR}) {
      editor.enter(IDC_OFFSET, L"12");
      const std::wstring with_offset = editor.description();
      select_all();
      SendMessageW(offset, removing, 0, 0);
      expect_offset(editor, L"", 0);
      EXPECT_NE(with_offset, editor.description());
      EXPECT_TRUE(SendMessageW(offset, removing == WM_CUT ? WM_UNDO : EM_UNDO, 0, 0));
      expect_offset(editor, L"12", 12);
      EXPECT_EQ(with_offset, editor.description());
    }
    editor.cancel();
  });
}

TEST_F(EditorOffset, FullWidthDigitsAreNoNumberToTheAutomationLibraryAndAreReported) {
  std::wstring digits = L"\uFF11\uFF12";
  long number = 0;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, VarI4FromStr(digits.data(), LOCALE_USER_DEFAULT, 0, &number));
  rule().roll_offset = 5;
  edit([&](Editor& editor) {
    SetDlgItemTextW(editor.window(), IDC_OFFSET, digits.c_str());
    SendMessageW(editor.window(), WM_USER + 7, reinterpret_cast<WPARAM>(editor.item(IDC_OFFSET)), 0);
    EXPECT_EQ(12, editor.spin()) << "the up-down control reads its edit by itself";
    EXPECT_EQ(digits, editor.text(IDC_OFFSET));
    editor.cancel();
  });
  EXPECT_THAT(reports(), ElementsAre(testing::StartsWith("TRACE HRESULT - 80020005")));
}

TEST_F(EditorOffset, ClickingTheSpinMovesTheEditAndTheDescription) {
  save_from(5, [](Editor& editor) {
    editor.spin_up(3);
    expect_offset(editor, L"8", 8);
    editor.spin_down();
    expect_offset(editor, L"7", 7);
  });
  EXPECT_EQ(7, rule().roll_offset);
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorOffset, SpinStopsAt0AndAt99) {
  save_from(98, [](Editor& editor) {
    editor.spin_up(3);
    expect_offset(editor, L"99", 99);
  });
  EXPECT_EQ(99, rule().roll_offset);
  save_from(1, [](Editor& editor) {
    editor.spin_down(3);
    expect_offset(editor, L"0", 0);
  });
  EXPECT_EQ(0, rule().roll_offset);
}

TEST_F(EditorOffset, SpinGoesOnFromWhatWasTyped) {
  save_from(5, [](Editor& editor) {
    editor.enter(IDC_OFFSET, L"41");
    editor.spin_up();
    expect_offset(editor, L"42", 42);
    editor.enter(IDC_OFFSET, L"");
    editor.spin_up();
    expect_offset(editor, L"1", 1);
  });
  EXPECT_EQ(1, rule().roll_offset);
}

TEST_F(EditorOffset, ArrowKeysMoveTheSpin) {
  save_from(5, [](Editor& editor) {
    SetFocus(editor.item(IDC_OFFSET));
    test_support::press(VK_UP);
    expect_offset(editor, L"6", 6);
    test_support::press(VK_DOWN);
    test_support::press(VK_DOWN);
    expect_offset(editor, L"4", 4);
  });
  EXPECT_EQ(4, rule().roll_offset);
}

TEST_F(EditorOffset, ScrollMessagesOfTheThumbSetTheEditAndTheDescription) {
  save_from(5, [](Editor& editor) {
    const auto spin = reinterpret_cast<LPARAM>(editor.item(IDC_OFFSET_SPIN));
    for (const int code : {SB_THUMBPOSITION, SB_THUMBTRACK}) {
      EXPECT_TRUE(editor.handles(WM_VSCROLL, MAKEWPARAM(code, 30 + code), spin));
      EXPECT_EQ(std::to_wstring(30 + code), editor.text(IDC_OFFSET));
      EXPECT_EQ(sentence_with_offset(std::to_wstring(30 + code)), editor.description());
    }
  });
}

TEST_F(EditorOffset, ScrollPositionIsSigned) {
  save_from(5, [](Editor& editor) {
    const auto spin = reinterpret_cast<LPARAM>(editor.item(IDC_OFFSET_SPIN));
    EXPECT_TRUE(editor.handles(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 0xFFFF), spin));
    EXPECT_EQ(L"-1", editor.text(IDC_OFFSET));
  });
  EXPECT_THAT(reports(), ElementsAre(offset_is_not_the_spins));
}

TEST_F(EditorOffset, OtherScrollMessagesAreIgnored) {
  save_from(5, [](Editor& editor) {
    const auto spin = reinterpret_cast<LPARAM>(editor.item(IDC_OFFSET_SPIN));
    for (const int code : {SB_LINEUP, SB_LINEDOWN, SB_PAGEUP, SB_PAGEDOWN, SB_TOP, SB_BOTTOM, SB_ENDSCROLL}) {
      EXPECT_FALSE(editor.handles(WM_VSCROLL, MAKEWPARAM(code, 30), spin)) << code;
    }
    for (HWND sender : {HWND{}, editor.item(IDC_OFFSET), editor.window()}) {
      EXPECT_FALSE(editor.handles(WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, 30), reinterpret_cast<LPARAM>(sender)));
    }
    EXPECT_FALSE(editor.handles(WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 30), spin));
    expect_offset(editor, L"5", 5);
  });
}

TEST_F(EditorOffset, NotificationsOfOtherWindowsAreIgnored) {
  save_from(5, [](Editor& editor) {
    SetWindowTextW(editor.item(IDC_OFFSET), L"8");
    EXPECT_FALSE(editor.handles(WM_USER + 7, 0, 0));
    EXPECT_FALSE(editor.handles(WM_USER + 7, reinterpret_cast<WPARAM>(editor.item(IDC_NAME)), 0));
    EXPECT_EQ(sentence_with_offset(L"5"), editor.description());
    EXPECT_TRUE(editor.handles(WM_USER + 7, reinterpret_cast<WPARAM>(editor.item(IDC_OFFSET)), 0));
    EXPECT_EQ(sentence_with_offset(L"8"), editor.description());
  });
}

TEST_F(EditorOffset, IsSavedFromTheSpinWhateverTheEditSays) {
  save_from(5, [](Editor& editor) { SetWindowTextW(editor.item(IDC_OFFSET), L"abc"); });
  EXPECT_EQ(5, rule().roll_offset);
}

TEST_F(EditorOffset, StoredOutsideTheRangeIsSavedAsTheSpinHoldsIt) {
  rule().roll_offset = 150;
  save_unchanged();
  EXPECT_EQ(99, rule().roll_offset);
  rule().roll_offset = -1;
  save_unchanged();
  EXPECT_EQ(0, rule().roll_offset);
  EXPECT_THAT(reports(), ElementsAre(offset_is_not_the_spins, offset_is_not_the_spins));
}

TEST_F(EditorOffset, TextThatIsNoNumberIsReportedAndTheDialogStaysOpen) {
  save_from(5, [](Editor& editor) {
    SetWindowTextW(editor.item(IDC_OFFSET), L"abc");
    SendMessageW(editor.window(), WM_USER + 7, reinterpret_cast<WPARAM>(editor.item(IDC_OFFSET)), 0);
    EXPECT_THAT(reports(),
                ElementsAre("TRACE HRESULT - 80020005; FILE - Dialog.h, LINE - * | Dialog.h:* DialogProcedure"));
    EXPECT_EQ(5, editor.spin());
    editor.enter(IDC_OFFSET, L"6");
    expect_offset(editor, L"6", 6);
  });
  EXPECT_EQ(6, rule().roll_offset);
}

}  // namespace
}  // namespace editor_test
