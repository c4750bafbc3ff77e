#include <algorithm>

#include "ListDialogTest.h"
#include "ResizableMsgSupport.h"
#include "SentMessages.h"

namespace list_test {
namespace {

using testing::ElementsAre;

constexpr int column_margin = 20;

class ListInitialisation : public ListDialogTest {};

std::string state_text(const CWPSTRUCT& message) {
  const auto& item = *reinterpret_cast<const LVITEMW*>(message.lParam);
  return "item " + std::to_string(static_cast<int>(message.wParam)) + " gets state " + std::to_string(item.state) +
         " of " + std::to_string(item.stateMask);
}

/// A message that is part of the initialisation, in words; empty for any other.
std::string step_text(const CWPSTRUCT& message) {
  if (message.message == WMU_RESIZESUPPORT && message.wParam == RQ_PROPERTIES) {
    return "anchor " + std::to_string(GetDlgCtrlID(message.hwnd));
  }
  if (message.message == WM_WINDOWPOSCHANGING && !GetParent(message.hwnd)) return "place the dialog";
  if (!is_list_view(message.hwnd)) return {};
  switch (message.message) {
    case LVM_SETEXTENDEDLISTVIEWSTYLE:
      return "extended style " + std::to_string(message.lParam) + " with mask " + std::to_string(message.wParam);
    case LVM_SETITEMSTATE:
      return state_text(message);
    case LVM_INSERTCOLUMNW:
      return "insert column " + std::to_string(message.wParam);
    case LVM_DELETEALLITEMS:
      return "delete all items";
    case LVM_INSERTITEMW:
      return "insert an item";
    case LVM_SETCOLUMNWIDTH:
      return "set the width of column " + std::to_string(message.wParam);
    default:
      return {};
  }
}

TEST_F(ListInitialisation, TakesItsStepsInOrder) {
  store_rules({L"TF", L"IF"});
  std::vector<std::string> steps;
  bool initialising = false;
  {
    const SentMessages watch([&](const CWPSTRUCT& message) {
      if (message.message == WM_INITDIALOG) initialising = true;
      const std::string step = initialising ? step_text(message) : std::string();
      if (!step.empty() && (steps.empty() || steps.back() != step)) steps.push_back(step);
    });
    open([&](RuleList&) { initialising = false; });
  }
  // What comes before is the frame's.
  steps.erase(steps.begin(), std::find(steps.begin(), steps.end(), "extended style 32 with mask 0"));
  // Showing the dialog places it once more.
  EXPECT_THAT(steps, ElementsAre("extended style 32 with mask 0", "item 0 gets state 2 of 2", "insert column 0",
                                 "delete all items", "insert an item", "item 0 gets state 3 of 3", "anchor 205",
                                 "anchor 201", "anchor 202", "anchor 203", "anchor 204", "anchor 2", "place the dialog",
                                 "set the width of column 0", "place the dialog", "set the width of column 0"));
}

TEST_F(ListInitialisation, LeavesTheFocusToItself) {
  // The dialog manager asks once; the answer that counts is what the whole window gives.
  std::vector<LRESULT> answers;
  const AnsweredMessages watch([&](const CWPRETSTRUCT& message) {
    if (message.message == WM_INITDIALOG) answers.push_back(message.lResult);
  });
  open([](RuleList&) {});
  EXPECT_THAT(answers, ElementsAre(0));
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
    EXPECT_STREQ(L"名称", title);
    EXPECT_EQ(LVCFMT_LEFT, column.fmt & LVCFMT_JUSTIFYMASK);
    EXPECT_EQ(0, column.iSubItem);
    EXPECT_FALSE(list.send(LVM_GETCOLUMNW, 1, reinterpret_cast<LPARAM>(&column)));
  });
}

/// Opens the dialog with a list view whose client area has that width before the dialog initialises itself; answers the
/// column record that it inserts then.
LVCOLUMNW column_for(const std::function<void()>& open, int client_width) {
  LVCOLUMNW inserted = {};
  const SentMessages watch([&](const CWPSTRUCT& message) {
    if (message.message == WM_INITDIALOG) {
      HWND view = GetDlgItem(message.hwnd, IDC_RULES_LIST);
      RECT window = {};
      RECT client = {};
      GetWindowRect(view, &window);
      GetClientRect(view, &client);
      const int frame = window.right - window.left - client.right;
      SetWindowPos(view, nullptr, 0, 0, client_width + frame, 100, SWP_NOMOVE | SWP_NOZORDER);
    }
    if (message.message == LVM_INSERTCOLUMNW && is_list_view(message.hwnd)) {
      inserted = *reinterpret_cast<const LVCOLUMNW*>(message.lParam);
    }
  });
  open();
  return inserted;
}

TEST_F(ListInitialisation, ColumnIsFirstInsertedTwentyPixelsNarrowerThanTheList) {
  const LVCOLUMNW column = column_for([&] { open([](RuleList&) {}); }, 200);
  EXPECT_EQ(LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM | LVCF_WIDTH, column.mask);
  EXPECT_EQ(200 - column_margin, column.cx);
}

TEST_F(ListInitialisation, ColumnWidthOfMinusOneIsLeftOut) {
  const LVCOLUMNW column = column_for([&] { open([](RuleList&) {}); }, column_margin - 1);
  EXPECT_EQ(LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM, column.mask);
}

TEST_F(ListInitialisation, ColumnMayBeInsertedWithANegativeWidth) {
  const LVCOLUMNW column = column_for([&] { open([](RuleList&) {}); }, column_margin - 2);
  EXPECT_EQ(LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM | LVCF_WIDTH, column.mask);
  EXPECT_EQ(-2, column.cx);
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

TEST_F(ListInitialisation, TitleIsThatOfTheTemplate) {
  open([](RuleList& list) { EXPECT_EQ(L"到期规则", test_support::window_text(list.window())); });
}

}  // namespace
}  // namespace list_test
