#include <algorithm>

#include "ListDialogTest.h"
#include "SentMessages.h"

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr wchar_t refusal[] = L"该规则由于正在应用于商品源设置中，因而不能删除：\n";

constexpr char delete_call[] = "IkvExpirationRuleService::delete_rule";
constexpr char not_confirmed[] = "ASSERT isOk | ExpirationRulesListDialog.cpp:220 try_to_delete_rule_impl";

/// Rules 1 "AU", 2 "IF" and 3 "TF".
class ListDelete : public ListDialogTest {
 protected:
  ListDelete() { store_rules({L"AU", L"IF", L"TF"}); }

  void use(const std::wstring& rule, const Names& settings) {
    for (const std::wstring& setting : settings) host.settings().push_back({setting, rule});
  }

  /// What is shown when the user presses Delete on a rule.
  MessageBoxContent shown_for(LPARAM rule_id) {
    MessageBoxContent content;
    open([&](RuleList& list) {
      list.select(list.find(rule_id));
      content = list.refused_delete();
    });
    return content;
  }

  Texts deletions() { return host.calls().all(delete_call); }

  std::vector<long> stored() {
    std::vector<long> ids;
    for (const HostRule& rule : host.rules()) ids.push_back(rule.id);
    return ids;
  }
};

TEST_F(ListDelete, RuleInUseByFiveSettingsIsRefusedWithThreeOfThem) {
  use(L"IF", {L"e", L"d", L"c", L"b", L"a"});
  const MessageBoxContent content = shown_for(2);
  EXPECT_EQ(refusal + std::wstring(L"e, d, c ...\n"), content.text);
  EXPECT_EQ(L"到期规则", content.caption);
  EXPECT_EQ(LoadIconW(nullptr, IDI_EXCLAMATION), content.icon);
  EXPECT_EQ(1, content.buttons);
  EXPECT_THAT(deletions(), IsEmpty());
  EXPECT_THAT(stored(), ElementsAre(1, 2, 3));
}

TEST_F(ListDelete, RuleInUseByThreeSettingsIsRefusedWithAllOfThem) {
  use(L"IF", {L"a", L"b", L"c"});
  EXPECT_EQ(refusal + std::wstring(L"a, b, c"), shown_for(2).text);
}

TEST_F(ListDelete, RuleInUseTwiceByOneNameIsRefusedWithBoth) {
  use(L"IF", {L"same", L"same"});
  EXPECT_EQ(refusal + std::wstring(L"same, same"), shown_for(2).text);
}

TEST_F(ListDelete, RefusalShowsNamesAsTheyAre) {
  use(L"IF", {L"%s \"100%\" %n", L"\U0001F4C8"});
  EXPECT_EQ(refusal + std::wstring(L"%s \"100%\" %n, \U0001F4C8"), shown_for(2).text);
}

TEST_F(ListDelete, RefusedDeleteLeavesListAndSelectionAlone) {
  use(L"IF", {L"a"});
  open([&](RuleList& list) {
    list.select(1);
    host.calls().forget();
    list.refused_delete();
    EXPECT_EQ(1, list.selected());
    EXPECT_THAT(host.calls().all("IkvRuleFilter::SetRuleID"), ElementsAre("IkvRuleFilter::SetRuleID(2)"));
  });
}

struct NameCase {
  const char* name;
  std::wstring rule_name;
};

class ListDeleteQuestion : public ListDelete, public testing::WithParamInterface<NameCase> {};

TEST_P(ListDeleteQuestion, NamesTheRule) {
  host.rules() = {{7, GetParam().rule_name}};
  const MessageBoxContent content = shown_for(7);
  EXPECT_EQ(L"是否删除到期规则\"" + GetParam().rule_name + L"\"？", content.text);
  EXPECT_EQ(L"到期规则", content.caption);
  EXPECT_EQ(LoadIconW(nullptr, IDI_QUESTION), content.icon);
  EXPECT_EQ(2, content.buttons);
  EXPECT_THAT(deletions(), IsEmpty());
  EXPECT_THAT(stored(), ElementsAre(7));
}

INSTANTIATE_TEST_SUITE_P(All, ListDeleteQuestion,
                         testing::Values(NameCase{"Plain", L"IF"}, NameCase{"Quotes", L"a \"quoted\" name"},
                                         NameCase{"TextFormat", L"%s%s%s"}, NameCase{"WritingFormat", L"%n"},
                                         NameCase{"Ampersand", L"P&L"}, NameCase{"Longest", std::wstring(63, L'字')},
                                         NameCase{"Surrogates", L"\U0001F4C8"}, NameCase{"Empty", L""}),
                         [](const auto& test) { return test.param.name; });

TEST_F(ListDelete, QuestionClosesAfterANameWithANullInside) {
  host.rules() = {{7, std::wstring(L"IF\0x", 4)}};
  EXPECT_EQ(L"是否删除到期规则\"IF\"？", shown_for(7).text);
}

TEST_F(ListDelete, QuestionBelongsToTheDialog) {
  open([](RuleList& list) {
    test_support::with_dialog([&] { list.press(IDC_DELETE_RULE); },
                              [&](HWND question) {
                                EXPECT_EQ(list.window(), GetWindow(question, GW_OWNER));
                                EXPECT_FALSE(IsWindowEnabled(list.window()));
                                EndDialog(question, IDNO);
                              });
  });
}

TEST_F(ListDelete, ConfirmedDeleteMakesTheCallsOfOnePassEach) {
  host.rules() = {{7, L"IF"}};
  use(L"TF", {L"a"});
  open([&](RuleList& list) {
    host.calls().forget();
    list.delete_selected();
    const Texts read_name = {"kvTable::CreateInstance(IkvTable)",
                             "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                             "IkvRuleFilter::SetRuleID(7)",
                             "IkvExpirationRuleService::load_rules(object, object)",
                             "IkvTable::GetRowCount",
                             "IkvTable::MoveFirst",
                             "IkvTable::GetFieldByID(1077)",
                             "IkvField::GetText(1077)"};
    Texts expected = read_name;
    expected.insert(expected.end(), {"kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                                     "IkvSymbolSourceService::load_symbol_source_settings(null, object)",
                                     "IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::GetFieldByID(1077)",
                                     "IkvField::GetText(1077)", "IkvTable::MoveNext", "IkvTable::IsEOF"});
    expected.insert(expected.end(), read_name.begin(), read_name.end());
    expected.insert(expected.end(),
                    {"IkvExpirationRuleService::delete_rule(7)", "kvTable::CreateInstance(IkvTable)",
                     "kvRuleFilter::CreateInstance(IkvRuleFilter)", "IkvRuleFilter::SetRuleID(0)",
                     "IkvExpirationRuleService::load_rules(object, object)", "IkvTable::MoveFirst", "IkvTable::IsEOF"});
    EXPECT_EQ(expected, calls());
  });
}

TEST_F(ListDelete, DeletedRuleIsGoneAndTheFirstRuleIsSelected) {
  open([&](RuleList& list) {
    list.select(1);
    list.delete_selected();
    EXPECT_EQ(Names({L"AU", L"TF"}), list.names());
    EXPECT_EQ(0, list.selected());
    EXPECT_EQ(UINT{LVIS_SELECTED | LVIS_FOCUSED}, list.state(0) & (LVIS_SELECTED | LVIS_FOCUSED));
    EXPECT_TRUE(list.can_change());
  });
  EXPECT_THAT(stored(), ElementsAre(1, 3));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ListDelete, ByTheButtonLeavesTheKeyboardWithTheButton) {
  open([&](RuleList& list) {
    const HWND button = GetDlgItem(list.dialog().m_hWnd, IDC_DELETE_RULE);
    list.select(1);
    SetFocus(button);
    ASSERT_EQ(button, GetFocus());
    list.delete_selected();
    EXPECT_EQ(button, GetFocus());
  });
}

TEST_F(ListDelete, FirstRuleIsVisibleAfterADelete) {
  store_hundred_rules();
  open([&](RuleList& list) {
    list.select(80);
    list.send(LVM_ENSUREVISIBLE, 99);
    list.delete_selected();
    EXPECT_EQ(0, list.selected());
    EXPECT_EQ(0, list.send(LVM_GETTOPINDEX));
  });
}

TEST_F(ListDelete, LastRuleLeavesAnEmptyListAndNothingToMakeVisible) {
  host.rules() = {{7, L"IF"}};
  open([&](RuleList& list) {
    bool made_visible = false;
    const SentMessages watch(
        [&](const CWPSTRUCT& message) { made_visible = made_visible || message.message == LVM_ENSUREVISIBLE; });
    list.delete_selected();
    EXPECT_EQ(0, list.count());
    EXPECT_FALSE(made_visible);
    list.press(IDC_DELETE_RULE);
    list.press(IDC_EDIT_RULE);
  });
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(ListDelete, FirstRuleIsMadeVisibleWhole) {
  open([&](RuleList& list) {
    std::vector<std::pair<WPARAM, LPARAM>> made_visible;
    const SentMessages watch([&](const CWPSTRUCT& message) {
      if (message.message == LVM_ENSUREVISIBLE) made_visible.emplace_back(message.wParam, message.lParam);
    });
    list.delete_selected();
    EXPECT_THAT(made_visible, ElementsAre(std::pair<WPARAM, LPARAM>(0, FALSE)));
  });
}

struct ConfirmationCase {
  const char* name;
  Fault fault;
  bool confirmed;
  bool deleted;
};

class ListDeleteAnswer : public ListDelete, public testing::WithParamInterface<ConfirmationCase> {};

TEST_P(ListDeleteAnswer, CountsByTheFlagAlone) {
  host.calls().fail(delete_call, GetParam().fault);
  open([&](RuleList& list) {
    list.select(1);
    list.delete_selected();
    EXPECT_EQ(GetParam().deleted ? Names({L"AU", L"TF"}) : Names({L"AU", L"IF", L"TF"}), list.names());
    EXPECT_EQ(0, list.selected());
  });
  EXPECT_THAT(deletions(), ElementsAre("IkvExpirationRuleService::delete_rule(2)"));
  if (GetParam().confirmed) {
    EXPECT_THAT(reports(), IsEmpty());
  } else {
    EXPECT_THAT(reports(), ElementsAre(not_confirmed));
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, ListDeleteAnswer,
    testing::Values(ConfirmationCase{"Failure", {E_FAIL}, false, false},
                    ConfirmationCase{"LackOfMemory", {E_OUTOFMEMORY}, false, false},
                    ConfirmationCase{"LostHost", {RPC_E_DISCONNECTED}, false, false},
                    ConfirmationCase{"NoInterface", {E_NOINTERFACE, Fault::Out::null}, false, false},
                    ConfirmationCase{"SuccessWithoutTheFlag", {S_OK}, false, false},
                    ConfirmationCase{"OtherSuccessWithoutTheFlag", {S_FALSE}, false, false},
                    ConfirmationCase{"FailureWithTheFlag", {E_FAIL, Fault::Out::given}, true, true}),
    [](const auto& test) { return test.param.name; });

TEST_F(ListDelete, RuleThatIsGoneAlreadyIsReportedAndTheListRefreshed) {
  open([&](RuleList& list) {
    list.select(1);
    host.rules().erase(host.rules().begin() + 1);
    // The rule has no name any more.
    const auto question = test_support::with_message_box([&] { list.press(IDC_DELETE_RULE); }, IDYES);
    EXPECT_EQ(L"是否删除到期规则\"\"？", question.text);
    EXPECT_EQ(Names({L"AU", L"TF"}), list.names());
  });
  EXPECT_THAT(reports(), ElementsAre(not_confirmed));
}

TEST_F(ListDelete, UsersFoundBeforeAFailureRefuseTheDelete) {
  use(L"IF", {L"a", L"b"});
  host.calls().fail("IkvField::GetText(209)", {E_FAIL}, 2);
  EXPECT_EQ(refusal + std::wstring(L"a"), shown_for(2).text);
  EXPECT_THAT(reports(), ElementsAre(StartsWith("ASSERT 80004005 | ExpirationRulesListDialog.cpp:145"),
                                     StartsWith("TRACE HRESULT - 80004005; FILE - ExpirationRulesListDialog.cpp, "
                                                "LINE - 154 | ExpirationRulesListDialog.cpp:154")));
}

TEST_F(ListDelete, FailureBeforeAnyUserIsFoundLeadsToTheQuestion) {
  use(L"IF", {L"a", L"b"});
  host.calls().fail("IkvField::GetText(209)", {E_FAIL});
  EXPECT_EQ(L"是否删除到期规则\"IF\"？", shown_for(2).text);
}

TEST_F(ListDelete, FailingRefillAfterADeleteIsReportedAndTheDialogStaysOpen) {
  open([&](RuleList& list) {
    // The tables before are those of the name, of the settings and of the name again.
    host.calls().fail("kvTable::CreateInstance", {E_FAIL, Fault::Out::null}, 4);
    list.delete_selected();
    EXPECT_EQ(0, list.count());
    list.dialog().update_expiration_rule_list();
    EXPECT_EQ(Names({L"IF", L"TF"}), list.names());
  });
  EXPECT_THAT(reports(), ElementsAre(StartsWith("TRACE HRESULT - 80004005; FILE - ExpirationRulesListDialog.cpp, "
                                                "LINE - 123 | ExpirationRulesListDialog.cpp:123")));
}

TEST_F(ListDelete, WithoutASelectionNothingHappens) {
  open([&](RuleList& list) {
    list.select(-1);
    host.calls().forget();
    list.key_down(VK_DELETE);
    list.press(IDC_DELETE_RULE);
    EXPECT_TRUE(list.handles_command(IDC_DELETE_RULE, BN_CLICKED));
    EXPECT_THAT(calls(), IsEmpty());
  });
}

TEST_F(ListDelete, CountsTheNumberAs32BitsOnly) {
  open([&](RuleList& list) {
    list.set_data(0, 0x1'00000000);
    host.calls().forget();
    list.key_down(VK_DELETE);
    EXPECT_THAT(calls(), IsEmpty());
    list.set_data(0, 0x1'00000002);
    EXPECT_EQ(L"是否删除到期规则\"IF\"？", list.refused_delete().text);
  });
}

TEST_F(ListDelete, KeyReachesARuleWithANegativeNumberThoughTheButtonDoesNot) {
  host.rules() = {{-5, L"IF"}};
  open([&](RuleList& list) {
    EXPECT_FALSE(list.can_change());
    test_support::with_message_box([&] { list.key_down(VK_DELETE); }, IDYES);
  });
  EXPECT_THAT(deletions(), ElementsAre("IkvExpirationRuleService::delete_rule(-5)"));
}

}  // namespace
}  // namespace list_test
