#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include "DialogTemplate.h"
#include "resource.h"

namespace editor_test {
namespace {

using test_support::DialogTemplate;
using test_support::TemplateControl;

constexpr DWORD type_mask = 0xF;  // of buttons and statics

struct Control {
  int id;
  const wchar_t* kind;
  DWORD style;  ///< bits that must be set
  DWORD mask;   ///< bits that are looked at
  const wchar_t* text;
};

constexpr DWORD combo_mask = CBS_DROPDOWNLIST | CBS_SORT | WS_VSCROLL | WS_TABSTOP;
constexpr DWORD combo_style = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
constexpr DWORD spin_style = UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_AUTOBUDDY | UDS_ARROWKEYS;

/// In the order of the template, which is the order of the Tab key.
const Control controls[] = {
    {IDC_NAME_LABEL, L"Static", SS_LEFT, type_mask, L"名称："},
    {IDC_NAME, L"Edit", ES_AUTOHSCROLL | WS_TABSTOP, ES_AUTOHSCROLL | ES_NUMBER | ES_MULTILINE | WS_TABSTOP, L""},
    {IDC_DESCRIPTION_GROUP, L"Button", BS_GROUPBOX, type_mask, L"到期规则说明"},
    {IDC_DESCRIPTION, L"Static", SS_LEFT, type_mask, L""},
    {IDC_OFFSET_LABEL, L"Static", SS_LEFT, type_mask, L"合约换月于指定日前"},
    {IDC_OFFSET, L"Edit", ES_NUMBER | WS_TABSTOP, ES_NUMBER | ES_MULTILINE | WS_TABSTOP, L""},
    {IDC_OFFSET_SPIN, L"msctls_updown32", spin_style, 0xFF, L""},
    {IDC_DAY_TYPE, L"ComboBox", combo_style | CBS_SORT, combo_mask, L""},
    {IDC_OFFSET_SUFFIX, L"Static", SS_LEFT, type_mask, L""},
    {IDC_DAY_LABEL, L"Static", SS_LEFT, type_mask, L"指定日为"},
    {-1, L"Static", SS_ETCHEDHORZ, SS_TYPEMASK, L""},
    {IDC_DAY_OF_MONTH_MODE, L"Button", BS_AUTORADIOBUTTON | WS_GROUP, type_mask | WS_GROUP, L"Radio1"},
    {IDC_WEEKDAY_MODE, L"Button", BS_AUTORADIOBUTTON, type_mask | WS_GROUP, L"Radio1"},
    {IDC_DAY_OF_MONTH, L"ComboBox", combo_style | WS_GROUP, combo_mask | WS_GROUP, L""},
    {IDC_DAY_SUFFIX, L"Static", SS_LEFT, type_mask, L"天，"},
    {IDC_DAY_MONTH, L"ComboBox", combo_style, combo_mask, L""},
    {IDC_WEEK_ORDINAL, L"ComboBox", combo_style, combo_mask, L""},
    {IDC_WEEKDAY, L"ComboBox", combo_style, combo_mask, L""},
    {IDC_WEEKDAY_SUFFIX, L"Static", SS_LEFT, type_mask, L"，"},
    {IDC_WEEKDAY_MONTH, L"ComboBox", combo_style, combo_mask, L""},
    {IDC_MOVE_TO_NEXT_TRADING_DAY, L"Button", BS_AUTOCHECKBOX | BS_MULTILINE, type_mask | BS_MULTILINE,
     L"如果交易所在到期日闭市，则到期日延到下一个交易日。"},
    {IDOK, L"Button", BS_DEFPUSHBUTTON | WS_TABSTOP, type_mask | WS_TABSTOP, L"确认"},
    {IDCANCEL, L"Button", BS_PUSHBUTTON | WS_TABSTOP, type_mask | WS_TABSTOP, L"取消"},
};

class EditorTemplate : public testing::Test {
 protected:
  const DialogTemplate dialog = test_support::read_dialog_template(202);
};

TEST_F(EditorTemplate, HasEveryControlInOrderWithItsKindStyleAndText) {
  ASSERT_EQ(std::size(controls), dialog.controls.size());
  for (std::size_t index = 0; index < std::size(controls); ++index) {
    const Control& expected = controls[index];
    const TemplateControl& control = dialog.controls[index];
    SCOPED_TRACE(expected.id);
    EXPECT_EQ(expected.id, control.id);
    EXPECT_EQ(0, lstrcmpiW(expected.kind, control.kind.c_str())) << testing::PrintToString(control.kind);
    EXPECT_EQ(expected.style, control.style & expected.mask);
    EXPECT_EQ(expected.text, control.text);
  }
}

TEST_F(EditorTemplate, IsNamedAndOfFixedSize) {
  EXPECT_EQ(L"编辑到期规则", dialog.caption);
  EXPECT_EQ(222, dialog.size.cx);
  EXPECT_EQ(186, dialog.size.cy);
  EXPECT_EQ(DWORD{WS_CAPTION | WS_SYSMENU | WS_POPUP},
            dialog.style & (WS_CAPTION | WS_SYSMENU | WS_POPUP | WS_THICKFRAME | WS_MAXIMIZEBOX));
}

TEST_F(EditorTemplate, UsesTheShellsDialogFontAtEightPoints) {
  EXPECT_EQ(L"MS Shell Dlg", dialog.font);
  EXPECT_EQ(8, dialog.font_size);
}

TEST_F(EditorTemplate, HasRadiosTooNarrowForTheirTexts) {
  for (const TemplateControl& control : dialog.controls) {
    if (control.text != L"Radio1") continue;
    EXPECT_EQ(10, control.rect.right - control.rect.left) << control.id;
  }
}

TEST_F(EditorTemplate, KeepsItsControlsInsideTheDialog) {
  for (const TemplateControl& control : dialog.controls) {
    // The height of a combo box is that of its list when it is dropped down.
    const LONG bottom = control.kind == L"ComboBox" ? control.rect.top + 14 : control.rect.bottom;
    EXPECT_GE(control.rect.left, 0) << control.id;
    EXPECT_GE(control.rect.top, 0) << control.id;
    EXPECT_LE(control.rect.right, dialog.size.cx) << control.id;
    EXPECT_LE(bottom, dialog.size.cy) << control.id;
  }
}

}  // namespace
}  // namespace editor_test
