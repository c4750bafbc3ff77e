#include "ListDialogTest.h"

namespace list_test {
namespace {

class ListButtons : public ListDialogTest {};

TEST_F(ListButtons, FollowTheSelection) {
  store_rules({L"AU", L"IF"});
  open([](RuleList& list) {
    EXPECT_TRUE(list.can_change());
    list.select(-1);
    EXPECT_FALSE(list.can_change());
    list.select(1);
    EXPECT_TRUE(list.can_change());
  });
}

TEST_F(ListButtons, AddAndCloseStayEnabled) {
  store_rules({L"AU"});
  open([](RuleList& list) {
    list.select(-1);
    EXPECT_TRUE(list.enabled(IDC_ADD_RULE));
    EXPECT_TRUE(list.enabled(IDCANCEL));
  });
}

TEST_F(ListButtons, StayAsTheyAreWhenARefillFindsNoRules) {
  store_rules({L"AU"});
  open([&](RuleList& list) {
    host.rules().clear();
    list.dialog().update_expiration_rule_list();
    EXPECT_TRUE(list.can_change());
    list.press(IDC_EDIT_RULE);
    list.press(IDC_DELETE_RULE);
  });
}

/// The buttons that are drawn as the default one.
std::vector<int> default_buttons(const RuleList& list) {
  std::vector<int> found;
  for (const int id : {IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE, IDCANCEL}) {
    if ((GetWindowLongW(list.item(id), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON) found.push_back(id);
  }
  return found;
}

/// Focuses a control as the Tab key does.
void tab_to(const RuleList& list, int id) {
  SendMessageW(list.window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(list.item(id)), TRUE);
  EXPECT_EQ(list.item(id), GetFocus());
}

TEST_F(ListButtons, DefaultOneIsDrawnWhereEnterGoesAfterAnAddAnEditAndADelete) {
  store_rules({L"AU", L"IF"});
  open([](RuleList& list) {
    for (const int id : {IDC_ADD_RULE, IDC_EDIT_RULE}) {
      tab_to(list, id);
      save_in_editor([&] { list.press(id); }, L"N" + std::to_wstring(id));
      EXPECT_EQ(list.view(), GetFocus());
      EXPECT_THAT(default_buttons(list), testing::ElementsAre(IDC_EDIT_RULE)) << id;
    }
    tab_to(list, IDC_DELETE_RULE);
    list.delete_selected();
    EXPECT_EQ(list.item(IDC_DELETE_RULE), GetFocus());
    EXPECT_THAT(default_buttons(list), testing::ElementsAre(IDC_DELETE_RULE));
  });
}

TEST_F(ListButtons, DefaultOneIsDrawnWhereEnterGoesAfterACancelANoAndARefusal) {
  store_rules({L"AU", L"IF"});
  host.settings().push_back({L"CFFEX", L"IF"});
  open([](RuleList& list) {
    const auto expect_kept = [&](int id) {
      EXPECT_EQ(list.item(id), GetFocus());
      EXPECT_THAT(default_buttons(list), testing::ElementsAre(id));
    };
    for (const int id : {IDC_ADD_RULE, IDC_EDIT_RULE}) {
      tab_to(list, id);
      cancel_in_editor([&] { list.press(id); });
      expect_kept(id);
    }
    for (const int index : {0, 1}) {
      list.select(index);
      tab_to(list, IDC_DELETE_RULE);
      list.refused_delete();
      expect_kept(IDC_DELETE_RULE);
    }
  });
}

TEST_F(ListButtons, FocusThatADeleteTookComesBackOrGoesToTheList) {
  store_rules({L"AU", L"IF"});
  open([&](RuleList& list) {
    // Of the two rules the second delete leaves none, and nothing enables the button again.
    for (const int expected : {IDC_DELETE_RULE, IDC_RULES_LIST}) {
      tab_to(list, IDC_DELETE_RULE);
      host.calls().inside("IkvExpirationRuleService::delete_rule", [&] {
        list.select(-1);
        EXPECT_EQ(nullptr, GetFocus());
      });
      list.delete_selected();
      EXPECT_EQ(list.item(expected), GetFocus());
    }
  });
}

TEST_F(ListButtons, FocusIsNotTakenFromAnotherActiveWindow) {
  store_rules({L"AU", L"IF"});
  open([&](RuleList& list) {
    tab_to(list, IDC_DELETE_RULE);
    HWND other =
        CreateWindowExW(0, L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
    host.calls().inside("IkvExpirationRuleService::delete_rule", [&] {
      SetActiveWindow(other);
      SetFocus(nullptr);
    });
    list.delete_selected();
    EXPECT_EQ(other, GetActiveWindow());
    DestroyWindow(other);
    SetActiveWindow(list.window());
  });
}

}  // namespace
}  // namespace list_test
