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

TEST_F(ListButtons, AreDisabledByARefillThatSelectsNothing) {
  store_rules({L"AU", L"IF"});
  open([](RuleList& list) {
    list.dialog().update_expiration_rule_list();
    EXPECT_EQ(-1, list.selected());
    EXPECT_FALSE(list.can_change());
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

}  // namespace
}  // namespace list_test
