#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "OwnedWindow.h"

ZD_IMPORT_PROBE(CreateWindowExW, CreateWindowProbe);
ZD_IMPORT_PROBE(DialogBoxParamW, ModalDialogProbe);
ZD_IMPORT_PROBE(InvalidateRect, InvalidateProbe);

namespace list_test {
namespace {

using testing::IsEmpty;

class ListLifetime : public ListDialogTest {
 protected:
  ListLifetime() { store_rules({L"AU", L"IF"}); }

  test_support::HostWindow owner;
};

TEST_F(ListLifetime, PlacementIsStoredWhenTheOwnerIsDestroyed) {
  open(
      [&](RuleList& list) {
        MoveWindow(list.window(), 33, 44, 555, 444, TRUE);
        owner.destroy();
      },
      owner.get());
  open([](RuleList& list) {
    const RECT rect = window_rect(list.window());
    EXPECT_EQ(33, rect.left);
    EXPECT_EQ(33 + 555, rect.right);
  });
}

TEST_F(ListLifetime, ListThatIsDestroyedIsReportedAndTheDialogStaysOpen) {
  open([&](RuleList& list) {
    DestroyWindow(list.view());
    list.dialog().update_expiration_rule_list();
    EXPECT_TRUE(IsWindowVisible(list.window()));
  });
  ASSERT_FALSE(reports().empty());
  EXPECT_THAT(test_support::reports_without_lines(recorder).front(), "ASSERT ::IsWindow(m_hWnd) | Window.cpp:* Send");
}

TEST_F(ListLifetime, DialogWithoutItsGripEditsNothingAndCloses) {
  CreateWindowProbe windows;
  windows.replace([&](DWORD ex_style, LPCWSTR name, LPCWSTR text, DWORD style, int x, int y, int cx, int cy,
                      HWND parent, HMENU menu, HINSTANCE module, LPVOID parameter) -> HWND {
    if (lstrcmpiW(name, L"SCROLLBAR") == 0) return nullptr;
    return windows.original(ex_style, name, text, style, x, y, cx, cy, parent, menu, module, parameter);
  });
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              ModalDialogProbe editors;
              editors.fail(0, -1);
              list.press(IDC_EDIT_RULE);
              list.double_click(0);
              list.press(IDC_DELETE_RULE);
              EXPECT_EQ(0, editors.calls());
              EXPECT_TRUE(IsWindowEnabled(list.window()));
            }));
  EXPECT_THAT(host.calls().all("IkvExpirationRuleService"), IsEmpty()) << "nothing was read nor deleted";
}

TEST_F(ListLifetime, RefillWithoutAListLeavesTheDesktopsPictureAlone) {
  InvalidateProbe invalidated;
  dialog.update_expiration_rule_list();
  EXPECT_EQ(0, invalidated.calls());
  EXPECT_FALSE(reports().empty()) << "and says that there is none";
}

}  // namespace
}  // namespace list_test
