#include "Depth.h"
#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "OwnedWindow.h"
#include "SentMessages.h"

ZD_IMPORT_PROBE(CreateWindowExW, CreateWindowProbe);
ZD_IMPORT_PROBE(DialogBoxParamW, ModalDialogProbe);
ZD_IMPORT_PROBE(InvalidateRect, InvalidateProbe);

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ListLifetime : public ListDialogTest {
 protected:
  ListLifetime() { store_rules({L"AU", L"IF"}); }

  test_support::HostWindow owner;
};

TEST_F(ListLifetime, OwnerIsDisabledWhileTheDialogIsOpen) {
  open(
      [&](RuleList& list) {
        EXPECT_EQ(owner.get(), GetWindow(list.window(), GW_OWNER));
        EXPECT_FALSE(IsWindowEnabled(owner.get()));
      },
      owner.get());
  EXPECT_TRUE(IsWindowEnabled(owner.get()));
}

TEST_F(ListLifetime, OwnerThatIsDestroyedTakesTheDialogWithIt) {
  EXPECT_NE(IDOK, open([&](RuleList&) { owner.destroy(); }, owner.get()));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ListLifetime, OwnerThatIsDestroyedUnderTheEditorTakesBothWithIt) {
  open(
      [&](RuleList& list) {
        host.calls().forget();
        test_support::with_dialog([&] { list.press(IDC_EDIT_RULE); }, [&](HWND) { owner.destroy(); });
      },
      owner.get());
  EXPECT_THAT(host.calls().all("IkvExpirationRuleService::update_rule"), IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ListLifetime, OwnerThatIsDestroyedUnderTheQuestionDeletesNothing) {
  open(
      [&](RuleList& list) {
        test_support::with_dialog([&] { list.press(IDC_DELETE_RULE); }, [&](HWND) { owner.destroy(); });
      },
      owner.get());
  EXPECT_THAT(host.calls().all("IkvExpirationRuleService::delete_rule"), IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ListLifetime, EndOfTheSessionLeavesTheDialogToItsUser) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              EXPECT_TRUE(SendMessageW(list.window(), WM_QUERYENDSESSION, 0, 0));
              SendMessageW(list.window(), WM_ENDSESSION, TRUE, 0);
              EXPECT_TRUE(IsWindowVisible(list.window()));
              EXPECT_EQ(2, list.count());
            }));
  EXPECT_THAT(reports(), IsEmpty());
}

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

TEST_F(ListLifetime, DialogThatIsNotOpenStillLooksUpNamesAndUsers) {
  EXPECT_STREQ(L"IF", dialog.expiration_rule_name(2));
  Names users;
  EXPECT_FALSE(dialog.is_expiration_rule_uses(2, users));
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

TEST_F(ListLifetime, OpeningAndClosingLeavesNoReferenceToTheHost) {
  for (int time = 0; time < test_support::repetitions(20, 3); ++time) open([](RuleList&) {});
  EXPECT_THAT(host.living(), ElementsAre(testing::StartsWith("kvStorage"))) << "which the test itself holds";
}

}  // namespace
}  // namespace list_test
