#include "ListDialogTest.h"
#include "SentMessages.h"
#include "string_t.h"

namespace list_test {
namespace {

using testing::ElementsAre;

constexpr int column_margin = 20;

class ListInitialisation : public ListDialogTest {};

TEST_F(ListInitialisation, LeavesTheFocusToItself) {
  std::vector<LRESULT> results;
  const HandledMessages watch([&](const CWPRETSTRUCT& message) {
    if (message.message == WM_INITDIALOG) results.push_back(message.lResult);
  });
  open([](RuleList&) {});
  EXPECT_THAT(results, ElementsAre(0));
}

TEST_F(ListInitialisation, ListSelectsWholeRowsAndNothingElse) {
  open([](RuleList& list) { EXPECT_EQ(LVS_EX_FULLROWSELECT, list.send(LVM_GETEXTENDEDLISTVIEWSTYLE)); });
}

TEST_F(ListInitialisation, OneColumnIsTitledName) {
  open([](RuleList& list) {
    wchar_t title[16] = {};
    LVCOLUMNW column = {};
    column.mask = LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = title;
    column.cchTextMax = ARRAYSIZE(title);
    EXPECT_TRUE(list.send(LVM_GETCOLUMNW, 0, reinterpret_cast<LPARAM>(&column)));
    EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_NAME_COLUMN), title);
    EXPECT_EQ(LVCFMT_LEFT, column.fmt & LVCFMT_JUSTIFYMASK);
    EXPECT_EQ(0, column.iSubItem);
    EXPECT_FALSE(list.send(LVM_GETCOLUMNW, 1, reinterpret_cast<LPARAM>(&column)));
  });
}

/// Opens the dialog with a list view whose client area has that width before the dialog initialises itself; returns the
/// column record that it inserts then.
LVCOLUMNW column_for(const std::function<void()>& open, int client_width) {
  LVCOLUMNW inserted = {};
  const SentMessages watch([&](const CWPSTRUCT& message) {
    if (message.message == WM_INITDIALOG) {
      HWND view = GetDlgItem(message.hwnd, IDC_RULES_LIST);
      const RECT window = window_rect(view);
      const int frame = window.right - window.left - client_rect(view).right;
      SetWindowPos(view, nullptr, 0, 0, client_width + frame, 100, SWP_NOMOVE | SWP_NOZORDER);
    }
    if (message.message == LVM_INSERTCOLUMNW && is_list_view(message.hwnd)) {
      inserted = *reinterpret_cast<const LVCOLUMNW*>(message.lParam);
    }
  });
  open();
  return inserted;
}

TEST_F(ListInitialisation, ColumnIsFirstInsertedTwentyPixelsNarrowerThanTheListUnlessThatIsMinusOne) {
  for (const int width : {180, -1, -2}) {
    const LVCOLUMNW column = column_for([&] { open([](RuleList&) {}); }, width + column_margin);
    const UINT mask = LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM | (width == -1 ? 0 : LVCF_WIDTH);
    EXPECT_EQ(mask, column.mask) << width;
    if (width != -1) {
      EXPECT_EQ(width, column.cx);
    }
  }
}

TEST_F(ListInitialisation, ShowsEveryRuleInTheOrderOfTheNames) {
  host.rules() = {{7, L"TF"}, {3, L"IF"}, {9, L"AU"}, {1, L"sc"}};
  open([](RuleList& list) {
    EXPECT_EQ(Names({L"AU", L"IF", L"sc", L"TF"}), list.names());
    EXPECT_THAT(list.rule_ids(), ElementsAre(9, 3, 1, 7));
  });
}

TEST_F(ListInitialisation, SelectsTheFirstRule) {
  store_rules({L"TF", L"IF"});
  open([](RuleList& list) {
    EXPECT_EQ(0, list.selected());
    EXPECT_EQ(UINT{LVIS_SELECTED | LVIS_FOCUSED}, list.state(0) & (LVIS_SELECTED | LVIS_FOCUSED));
    EXPECT_TRUE(list.can_change());
  });
}

TEST_F(ListInitialisation, EmptyTableLeavesEditAndDeleteEnabledButInert) {
  EXPECT_EQ(IDCANCEL, open([](RuleList& list) {
              EXPECT_EQ(0, list.count());
              EXPECT_TRUE(list.can_change());
              list.press(IDC_EDIT_RULE);
              list.press(IDC_DELETE_RULE);
              list.key_down(VK_DELETE);
              EXPECT_TRUE(IsWindowEnabled(list.window()));
            }));
  EXPECT_THAT(host.calls().all("IkvExpirationRuleService"), testing::SizeIs(1)) << "the first fill";
  EXPECT_THAT(reports(), testing::IsEmpty());
}

}  // namespace
}  // namespace list_test
