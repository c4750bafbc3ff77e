#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "SentMessages.h"
#include "WindowText.h"
#include "string_t.h"

ZD_IMPORT_PROBE(DialogBoxParamW, ModalDialogProbe);

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr UINT selected_and_focused = LVIS_SELECTED | LVIS_FOCUSED;

/// Rules 1 "AU", 2 "IF" and 3 "TF".
class ListEditing : public ListDialogTest {
 protected:
  ListEditing() { store_rules({L"AU", L"IF", L"TF"}); }

  static void expect_only_selection(const RuleList& list, int index) {
    EXPECT_EQ(index, list.selected());
    EXPECT_EQ(selected_and_focused, list.state(index) & selected_and_focused);
    EXPECT_TRUE(list.can_change());
  }
};

TEST_F(ListEditing, EditOpensTheSelectedRule) {
  open([](RuleList& list) {
    list.select(1);
    EXPECT_EQ(L"IF", cancel_in_editor([&] { list.press(IDC_EDIT_RULE); }));
  });
}

TEST_F(ListEditing, EditorBelongsToTheDialog) {
  open([](RuleList& list) {
    test_support::with_dialog([&] { list.press(IDC_EDIT_RULE); },
                              [&](HWND editor) {
                                EXPECT_EQ(list.window(), GetWindow(editor, GW_OWNER));
                                EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_EDIT_RULE_TITLE),
                                          base::window_text(editor));
                                EndDialog(editor, IDCANCEL);
                              });
  });
}

TEST_F(ListEditing, DoubleClickOpensTheRuleUnderIt) {
  open([](RuleList& list) {
    EXPECT_EQ(0, list.selected());
    EXPECT_EQ(L"TF", cancel_in_editor([&] { list.double_click(2); }));
  });
}

TEST_F(ListEditing, DoubleClickOnEmptySpaceDoesNothing) {
  open([&](RuleList& list) {
    host.calls().forget();
    list.double_click(-1);
    EXPECT_THAT(calls(), IsEmpty());
  });
}

TEST_F(ListEditing, WithoutASelectionEditDoesNothing) {
  open([&](RuleList& list) {
    list.select(-1);
    host.calls().forget();
    EXPECT_TRUE(list.handles_command(IDC_EDIT_RULE, BN_CLICKED));
    EXPECT_THAT(calls(), IsEmpty());
  });
}

TEST_F(ListEditing, AddOpensANewRule) {
  open([](RuleList& list) {
    test_support::with_dialog([&] { list.press(IDC_ADD_RULE); },
                              [&](HWND editor) {
                                EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_ADD_RULE_TITLE),
                                          base::window_text(editor));
                                EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_NEW_RULE_NAME),
                                          test_support::item_text(editor, IDC_NAME));
                                EndDialog(editor, IDCANCEL);
                              });
  });
}

TEST_F(ListEditing, CancelledEditorLeavesTheListAlone) {
  open([&](RuleList& list) {
    list.select(1);
    host.rules().push_back({9, L"unseen"});
    for (const int button : {IDC_ADD_RULE, IDC_EDIT_RULE}) cancel_in_editor([&] { list.press(button); });
    EXPECT_EQ(Names({L"AU", L"IF", L"TF"}), list.names());
    EXPECT_EQ(1, list.selected());
  });
}

TEST_F(ListEditing, CloseWithinALookupOpensNoEditor) {
  const std::pair<int, const char*> lookups[] = {{IDC_ADD_RULE, "IkvTable::AppendRow"},
                                                 {IDC_EDIT_RULE, "IkvExpirationRuleService::load_rules"}};
  for (const auto& [button, call] : lookups) {
    ModalDialogProbe editors;
    int opened = 0;
    EXPECT_EQ(IDCANCEL, open([&, button = button, call = call](RuleList& list) {
                editors.replace([&](auto...) { return ++opened, IDCANCEL; });
                host.calls().inside(call, [&] { list.handles_command(IDCANCEL, BN_CLICKED); });
                list.press(button);
              }));
    EXPECT_EQ(0, opened) << button;
  }
}

TEST_F(ListEditing, AddedRuleThatSortsLastIsSelectedAndScrolledTo) {
  store_hundred_rules();
  open([](RuleList& list) {
    save_in_editor([&] { list.press(IDC_ADD_RULE); }, L"zinc");
    EXPECT_EQ(L"zinc", list.name(100));
    EXPECT_EQ(101, list.data(100));
    expect_only_selection(list, 100);
    EXPECT_EQ(101 - list.send(LVM_GETCOUNTPERPAGE), list.send(LVM_GETTOPINDEX));
    EXPECT_EQ(list.view(), GetFocus());
  });
}

TEST_F(ListEditing, EditedRuleIsReselectedAtItsNewPosition) {
  open([&](RuleList& list) {
    host.rules().push_back({9, L"seen after the save"});
    save_in_editor([&] { list.press(IDC_EDIT_RULE); }, L"ZN");
    EXPECT_EQ(Names({L"IF", L"seen after the save", L"TF", L"ZN"}), list.names());
    EXPECT_EQ(1, list.data(3));
    expect_only_selection(list, 3);
    EXPECT_EQ(list.view(), GetFocus());
  });
}

TEST_F(ListEditing, DoubleClickedRuleIsReselected) {
  open([](RuleList& list) {
    save_in_editor([&] { list.double_click(2); }, L"A first");
    EXPECT_EQ(3, list.data(0));
    expect_only_selection(list, 0);
  });
}

TEST_F(ListEditing, RuleIsReselectedByNumberAmongEqualNames) {
  host.rules() = {{1, L"same"}, {2, L"same"}, {3, L"same"}};
  open([](RuleList& list) {
    for (const LPARAM rule_id : {1, 2, 3}) {
      list.select(list.find(rule_id));
      // The editor refuses a name that another rule has, unless it is the rule's own.
      save_in_editor([&] { list.press(IDC_EDIT_RULE); }, L"same");
      EXPECT_EQ(3, list.count());
      expect_only_selection(list, list.find(rule_id));
    }
  });
}

// The header covers the first row.
TEST_F(ListEditing, ReselectedRuleIsTheThirdVisibleRow) {
  store_hundred_rules();
  open([](RuleList& list) {
    for (const int index : {50, 2, 30}) {
      list.select(index);
      save_in_editor([&] { list.press(IDC_EDIT_RULE); }, list.name(index));
      expect_only_selection(list, index);
      const RECT bounds = list.bounds(index);
      EXPECT_EQ(2, bounds.top / (bounds.bottom - bounds.top)) << index;
    }
  });
}

TEST_F(ListEditing, RuleNearTheTopIsScrolledAsFarAsTheListGoes) {
  store_hundred_rules();
  open([](RuleList& list) {
    list.send(LVM_ENSUREVISIBLE, 99);
    list.select(1);
    save_in_editor([&] { list.press(IDC_EDIT_RULE); }, list.name(1));
    EXPECT_EQ(0, list.send(LVM_GETTOPINDEX));
  });
}

TEST_F(ListEditing, ScrollsByTheItemsTopLessTwoItemHeights) {
  store_hundred_rules();
  open([](RuleList& list) {
    list.select(40);
    RECT bounds = {};
    std::vector<std::pair<int, int>> scrolls;
    {
      const SentMessages watch([&](const CWPSTRUCT& message) {
        if (message.hwnd != list.view()) return;
        if (message.message == LVM_SCROLL) {
          bounds = list.bounds(40);
          scrolls.emplace_back(static_cast<int>(message.wParam), static_cast<int>(message.lParam));
        }
      });
      save_in_editor([&] { list.press(IDC_EDIT_RULE); }, list.name(40));
    }
    EXPECT_THAT(scrolls, ElementsAre(std::pair<int, int>(bounds.left, 3 * bounds.top - 2 * bounds.bottom)));
    EXPECT_NE(0, scrolls.front().second);
  });
}

TEST_F(ListEditing, FailedAddRefillsTheListAndSelectsNothing) {
  host.calls().fail("IkvExpirationRuleService::add_rule", {E_FAIL});
  open([&](RuleList& list) {
    host.rules().push_back({9, L"seen after the save"});
    save_in_editor([&] { list.press(IDC_ADD_RULE); }, L"ZN");
    EXPECT_EQ(Names({L"AU", L"IF", L"seen after the save", L"TF"}), list.names());
    EXPECT_EQ(-1, list.selected());
    EXPECT_FALSE(list.can_change());
  });
}

TEST_F(ListEditing, FailedEditRefillsTheListAndReselectsTheRule) {
  host.calls().fail("IkvExpirationRuleService::update_rule", {E_FAIL});
  open([](RuleList& list) {
    list.select(1);
    save_in_editor([&] { list.press(IDC_EDIT_RULE); }, L"ZN");
    EXPECT_EQ(Names({L"AU", L"IF", L"TF"}), list.names());
    expect_only_selection(list, 1);
  });
}

/// The messages about its items that the list view gets from the last refill on.
std::vector<std::string> selecting_messages(const RuleList& list, const std::function<void()>& act) {
  std::vector<std::string> messages;
  const SentMessages watch([&](const CWPSTRUCT& message) {
    if (message.hwnd != list.view()) return;
    const auto number = [&](const char* text) { return text + std::to_string(static_cast<int>(message.wParam)); };
    switch (message.message) {
      case LVM_DELETEALLITEMS:
        messages.clear();
        break;
      case LVM_GETITEMRECT:
        messages.push_back(number("bounds of "));
        break;
      case LVM_SCROLL:
        messages.push_back(number("scroll "));
        break;
      case LVM_SETITEMSTATE:
        messages.push_back(number("select "));
        EXPECT_EQ(selected_and_focused, reinterpret_cast<const LVITEMW*>(message.lParam)->state);
        EXPECT_EQ(selected_and_focused, reinterpret_cast<const LVITEMW*>(message.lParam)->stateMask);
        break;
      case WM_SETFOCUS:
        messages.push_back("focus");
        break;
      default:
        break;
    }
  });
  act();
  return messages;
}

TEST_F(ListEditing, RuleThatIsMissingAfterItsEditSelectsEveryItem) {
  open([&](RuleList& list) {
    const auto messages = selecting_messages(list, [&] {
      test_support::with_dialog([&] { list.press(IDC_EDIT_RULE); },
                                [&](HWND editor) {
                                  host.rules().erase(host.rules().begin());
                                  test_support::click(editor, IDOK);
                                });
    });
    EXPECT_EQ(Names({L"IF", L"TF"}), list.names());
    EXPECT_THAT(messages, ElementsAre("bounds of -1", "scroll 0", "select -1", "focus"));
  });
}

TEST_F(ListEditing, EditorThatCannotBeCreatedIsReportedAndTheDialogStaysOpen) {
  for (const int button : {IDC_ADD_RULE, IDC_EDIT_RULE}) {
    recorder.reset();
    open([&](RuleList& list) {
      host.calls().fail("kvTable::CreateInstance", {E_FAIL, Fault::Out::null});
      list.press(button);
      EXPECT_EQ(Names({L"AU", L"IF", L"TF"}), list.names());
      EXPECT_TRUE(IsWindowEnabled(list.window()));
    });
    EXPECT_THAT(reports(), ElementsAre(testing::StartsWith("TRACE HRESULT - 8000")));
  }
}

}  // namespace
}  // namespace list_test
