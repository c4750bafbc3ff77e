#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include "DialogTemplate.h"

namespace list_test {
namespace {

using test_support::DialogTemplate;
using test_support::TemplateControl;

constexpr DWORD child = WS_CHILD | WS_VISIBLE;
constexpr DWORD push_button = child | WS_TABSTOP | BS_PUSHBUTTON;
constexpr DWORD list_style =
    child | WS_TABSTOP | WS_BORDER | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SORTASCENDING | LVS_ALIGNLEFT;

/// In the order of the template, which is the order of the Tab key. The resource compiler writes the names of classes
/// in capitals; the system does not mind.
const TemplateControl controls[] = {
    {205, L"Button", child | BS_GROUPBOX, {7, 7, 248, 187}, L"到期规则列表"},
    {201, L"SYSLISTVIEW32", list_style, {14, 17, 181, 179}, L""},
    {202, L"Button", push_button, {192, 17, 242, 31}, L"新增..."},
    {203, L"Button", child | WS_TABSTOP | BS_DEFPUSHBUTTON, {192, 39, 242, 53}, L"编辑..."},
    {204, L"Button", push_button, {192, 61, 242, 75}, L"删除"},
    {2, L"Button", push_button, {198, 193, 248, 207}, L"关闭"},
};

TEST(ListTemplate, DialogHasItsCaptionSizeStyleAndFont) {
  const DialogTemplate list = test_support::read_dialog_template(201);
  EXPECT_EQ(L"到期规则", list.caption);
  EXPECT_EQ(258, list.size.cx);
  EXPECT_EQ(214, list.size.cy);
  EXPECT_EQ(DWORD{WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | DS_CENTER | DS_SETFONT | DS_FIXEDSYS},
            list.style);
  EXPECT_EQ(0U, list.ex_style);
  EXPECT_EQ(8, list.font_size);
  EXPECT_EQ(L"MS Shell Dlg", list.font);
}

TEST(ListTemplate, HasItsControlsAtTheirPositions) {
  EXPECT_THAT(test_support::read_dialog_template(201).controls, testing::ElementsAreArray(controls));
}

}  // namespace
}  // namespace list_test
