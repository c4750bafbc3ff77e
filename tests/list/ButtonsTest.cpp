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

struct NumberCase {
  const char* name;
  long rule_id;
  bool can_change;
};

class ListButtonsOfRule : public ListDialogTest, public testing::WithParamInterface<NumberCase> {};

TEST_P(ListButtonsOfRule, AreEnabledForPositiveNumbers) {
  host.rules() = {{GetParam().rule_id, L"rule"}};
  open([](RuleList& list) {
    EXPECT_EQ(GetParam().rule_id, list.data(0));
    EXPECT_EQ(GetParam().can_change, list.can_change());
  });
}

INSTANTIATE_TEST_SUITE_P(All, ListButtonsOfRule,
                         testing::Values(NumberCase{"Zero", 0, false}, NumberCase{"One", 1, true},
                                         NumberCase{"MinusOne", -1, false}, NumberCase{"Largest", 0x7FFFFFFF, true},
                                         NumberCase{"Smallest", -0x7FFFFFFF - 1, false}),
                         [](const auto& test) { return test.param.name; });

TEST_F(ListButtons, CountTheNumberAs32BitsOnly) {
  store_rules({L"AU"});
  open([](RuleList& list) {
    list.set_data(0, 0x1'00000000);
    EXPECT_FALSE(list.can_change());
    list.set_data(0, 0x1'00000001);
    EXPECT_TRUE(list.can_change());
    list.set_data(0, 0x80000000);
    EXPECT_FALSE(list.can_change());
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
