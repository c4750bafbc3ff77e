#include <algorithm>

#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "RuleMessages.h"
#include "SentMessages.h"
#include "string_t.h"

ZD_IMPORT_PROBE(MessageBoxW, MessageBoxProbe);

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using resource_string::resourse_2_string_impl;

constexpr char delete_call[] = "IkvExpirationRuleService::delete_rule";
constexpr char not_confirmed[] = "ASSERT isOk | ExpirationRulesListDialog.cpp:220 try_to_delete_rule_impl";

/// Rules 1 "AU", 2 "IF" and 3 "TF".
class ListDelete : public ListDialogTest {
 protected:
  ListDelete() { store_rules({L"AU", L"IF", L"TF"}); }

  void use(const std::wstring& rule, const Names& settings) {
    for (const std::wstring& setting : settings) host.settings().push_back({setting, rule});
  }

  static std::wstring question(const wchar_t* rule_name) {
    return zd_expiration_rule_plugin::confirm_delete_text(resourse_2_string_impl(IDS_CONFIRM_DELETE), rule_name);
  }
  static std::wstring refusal(const Names& users) {
    return zd_expiration_rule_plugin::rule_in_use_text(resourse_2_string_impl(IDS_RULE_IN_USE), users);
  }

  /// What is shown when the user clicks Delete on a rule.
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
  EXPECT_EQ(refusal({L"e", L"d", L"c", L"b", L"a"}), content.text);
  EXPECT_EQ(resourse_2_string_impl(IDS_CAPTION), content.caption);
  EXPECT_EQ(LoadIconW(nullptr, IDI_EXCLAMATION), content.icon);
  EXPECT_EQ(1, content.buttons);
  EXPECT_THAT(deletions(), IsEmpty());
  EXPECT_THAT(stored(), ElementsAre(1, 2, 3));
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

TEST_F(ListDelete, QuestionNamesTheRule) {
  host.rules() = {{7, L"\"%s\" P&L"}};
  const MessageBoxContent content = shown_for(7);
  EXPECT_EQ(question(L"\"%s\" P&L"), content.text);
  EXPECT_EQ(resourse_2_string_impl(IDS_CAPTION), content.caption);
  EXPECT_EQ(LoadIconW(nullptr, IDI_QUESTION), content.icon);
  EXPECT_EQ(2, content.buttons);
  EXPECT_THAT(deletions(), IsEmpty());
  EXPECT_THAT(stored(), ElementsAre(7));
}

TEST_F(ListDelete, CloseWithinALookupAsksAndDeletesNothing) {
  use(L"IF", {L"a"});
  for (const int rule : {1, 2}) {
    for (const char* call :
         {"IkvExpirationRuleService::load_rules", "IkvSymbolSourceService::load_symbol_source_settings"}) {
      MessageBoxProbe boxes;
      boxes.fail(0, IDYES);
      EXPECT_EQ(IDCANCEL, open([&](RuleList& list) {
                  list.select(list.find(rule));
                  host.calls().inside(call, [&] { list.handles_command(IDCANCEL, BN_CLICKED); });
                  list.press(IDC_DELETE_RULE);
                }));
      EXPECT_EQ(0, boxes.calls()) << rule << call;
    }
  }
  EXPECT_THAT(deletions(), IsEmpty());
  EXPECT_THAT(stored(), ElementsAre(1, 2, 3));
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

// The calls within each step are those of the lookups and of the refill.
TEST_F(ListDelete, ConfirmedDeleteLooksForUsersAsksDeletesAndRefills) {
  open([&](RuleList& list) {
    host.calls().forget();
    list.delete_selected();
    Texts services;
    for (const std::string& call : calls()) {
      if (call.find("Service::") != std::string::npos) services.push_back(call);
    }
    EXPECT_THAT(services, ElementsAre("IkvExpirationRuleService::load_rules(object, object)",
                                      "IkvSymbolSourceService::load_symbol_source_settings(null, object)",
                                      "IkvExpirationRuleService::load_rules(object, object)",
                                      "IkvExpirationRuleService::delete_rule(1)",
                                      "IkvExpirationRuleService::load_rules(object, object)"));
  });
}

TEST_F(ListDelete, LastRuleLeavesAnEmptyList) {
  host.rules() = {{7, L"IF"}};
  open([&](RuleList& list) {
    list.delete_selected();
    EXPECT_EQ(0, list.count());
    list.press(IDC_DELETE_RULE);
    list.press(IDC_EDIT_RULE);
  });
  EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(ListDelete, DeletedRuleLeavesTheListAndTheFirstRuleIsSelected) {
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

TEST_F(ListDelete, FirstRuleIsScrolledWhollyIntoView) {
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

class ListDeleteResult : public ListDelete, public testing::WithParamInterface<ConfirmationCase> {};

TEST_P(ListDeleteResult, CountsByTheFlagAlone) {
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
    All, ListDeleteResult,
    testing::Values(ConfirmationCase{"Failure", {E_FAIL}, false, false},
                    ConfirmationCase{"OutOfMemory", {E_OUTOFMEMORY}, false, false},
                    ConfirmationCase{"LostHost", {RPC_E_DISCONNECTED}, false, false},
                    ConfirmationCase{"NoInterface", {E_NOINTERFACE, Fault::Out::null}, false, false},
                    ConfirmationCase{"SuccessWithoutTheFlag", {S_OK}, false, false},
                    ConfirmationCase{"OtherSuccessWithoutTheFlag", {S_FALSE}, false, false},
                    ConfirmationCase{"FailureWithTheFlag", {E_FAIL, Fault::Out::given}, true, true}),
    [](const auto& test) { return test.param.name; });

TEST_F(ListDelete, RuleThatIsDeletedAlreadyIsReportedAndTheListRefreshed) {
  open([&](RuleList& list) {
    list.select(1);
    host.rules().erase(host.rules().begin() + 1);
    // The rule has no name any more.
    const auto asked = test_support::with_message_box([&] { list.press(IDC_DELETE_RULE); }, IDYES);
    EXPECT_EQ(question(L""), asked.text);
    EXPECT_EQ(Names({L"AU", L"TF"}), list.names());
  });
  EXPECT_THAT(reports(), ElementsAre(not_confirmed));
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

}  // namespace
}  // namespace list_test
