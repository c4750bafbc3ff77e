#include "FieldIds.h"
#include "LookupTest.h"
#include "RuleUsers.h"

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Rule 5 is named "IF".
class RuleUsers : public LookupTest {
 protected:
  RuleUsers() { host.rules() = {{4, L"TF"}, {rule_id, L"IF"}}; }

  bool find_users(long number = rule_id) { return dialog.is_expiration_rule_uses(number, users); }
  static std::string caught(HRESULT hresult) { return list_test::caught("is_expiration_rule_uses", 154, hresult); }
  static std::string failed(int line, HRESULT hresult) {
    return list_test::failed("is_expiration_rule_uses", line, hresult);
  }

  Names users = {L"left over"};
};

TEST_F(RuleUsers, NoSettingsAtAllMeansNoUsers) {
  EXPECT_FALSE(find_users());
  EXPECT_THAT(users, IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleUsers, ComeInTableOrderWithDuplicates) {
  host.settings() = {{L"SHFE", L"IF"}, {L"CFFEX", L"IF"}, {L"other", L"TF"}, {L"SHFE", L"IF"}, {L"ANY", L"IF"}};
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(L"SHFE", L"CFFEX", L"SHFE", L"ANY"));
}

TEST_F(RuleUsers, RuleThatNoSettingNamesHasNone) {
  host.settings() = {{L"a", L"TF"}, {L"b", L""}};
  EXPECT_FALSE(find_users());
  EXPECT_THAT(users, IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleUsers, AreFoundByTheNameAsItIs) {
  host.rules() = {{rule_id, std::wstring(L"Ä\0x", 3)}};
  host.settings() = {{L"lower case", std::wstring(L"ä\0x", 3)},
                     {L"prefix", L"Ä"},
                     {L"longer", std::wstring(L"Ä\0x ", 4)},
                     {L"decomposed", std::wstring(L"A\x0308\0x", 4)},
                     {L"same", std::wstring(L"Ä\0x", 3)}};
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(L"same"));
}

TEST_F(RuleUsers, RuleThatCannotBeReadIsUsedBySettingsThatNameNoRule) {
  host.settings() = {{L"a", L"IF"}, {L"b", L""}, {L"c", L"TF"}};
  host.calls().fail("IkvField::GetText(1077)", {S_OK, Fault::Out::null}, 3);
  EXPECT_TRUE(find_users(77));
  EXPECT_THAT(users, ElementsAre(L"b", L"c"));
}

TEST_F(RuleUsers, RuleWithoutANameIsUsedBySettingsThatNameNoRule) {
  host.settings() = {{L"a", L"IF"}, {L"b", L""}};
  host.calls().fail("IkvField::GetText(1077)", {S_OK, Fault::Out::null});
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(L"b"));
}

TEST_F(RuleUsers, SettingWithoutANameCounts) {
  host.settings() = {{L"a", L"IF"}, {L"", L"IF"}};
  host.calls().fail("IkvField::GetText(209)", {S_OK, Fault::Out::null});
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(L"", L""));
}

TEST_F(RuleUsers, SettingNameIsReadUnchanged) {
  const std::wstring name(L"%s\"\0\xDC00", 5);
  host.settings() = {{name, L"IF"}};
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(name));
}

TEST_F(RuleUsers, WholeTableIsReadInOnePass) {
  host.settings() = {{L"a", L"IF"}, {L"b", L"TF"}};
  find_users();
  const Texts all = calls();
  const Texts lookup(all.begin() + 8, all.end());  // the reading of the rule's name comes first
  EXPECT_THAT(lookup, ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                                  "IkvSymbolSourceService::load_symbol_source_settings(null, object)",
                                  "IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::GetFieldByID(1077)",
                                  "IkvField::GetText(1077)", "IkvTable::GetFieldByID(209)", "IkvField::GetText(209)",
                                  "IkvTable::MoveNext", "IkvTable::IsEOF", "IkvTable::GetFieldByID(1077)",
                                  "IkvField::GetText(1077)", "IkvTable::MoveNext", "IkvTable::IsEOF"));
}

TEST_F(RuleUsers, FieldOfARowIsReleasedOnceTheWalkHasMovedOn) {
  host.settings() = {{L"a", L"IF"}, {L"b", L"TF"}};
  std::vector<std::size_t> living;
  const auto count = [&] { living.push_back(host.living().size()); };
  for (const char* call : {"IkvTable::GetFieldByID(209)", "IkvTable::MoveNext"}) host.calls().inside(call, count);
  host.calls().inside("IkvTable::MoveNext", [&] { host.calls().inside("IkvTable::IsEOF", count); });
  find_users();
  ASSERT_EQ(3u, living.size());
  EXPECT_EQ(living[0], living[1]) << "the rule's field is held, the setting's is released";
  EXPECT_EQ(living[0], living[2]);
}

constexpr RuleUsersLocations::FailedCall nowhere = {{"Some.cpp", 1, "f", "void f()"}, L""};
constexpr RuleUsersLocations locations = {nowhere, nowhere, nowhere};

TEST_F(RuleUsers, TableWithoutTheFieldOfTheRuleHasNone) {
  users.clear();
  const IkvTablePtr table =
      host.table({{{KVFIELD_SETTING_NAME, L"a"}}, {{KVFIELD_SETTING_NAME, L"b"}}}).GetInterfacePtr();
  collect_rule_users(table, L"", locations, users);
  EXPECT_THAT(users, IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleUsers, TableWithoutTheFieldOfTheSettingsNameHasNone) {
  users.clear();
  const IkvTablePtr table = host.table({{{KVFIELD_RULE_NAME, L"IF"}}, {{KVFIELD_RULE_NAME, L"IF"}}}).GetInterfacePtr();
  collect_rule_users(table, L"IF", locations, users);
  EXPECT_THAT(users, IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleUsers, NumberWhereANameShouldBeIsReported) {
  users.clear();
  host.odd_values()[KVFIELD_RULE_NAME] = 7L;
  const IkvTablePtr table = host.table({{{KVFIELD_RULE_NAME, L"IF"}, {KVFIELD_SETTING_NAME, L"a"}}}).GetInterfacePtr();
  EXPECT_THROW(collect_rule_users(table, L"IF", locations, users), _com_error);
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80020005 | Some.cpp:1 f"));
}

TEST_F(RuleUsers, TableThatCannotBeCreatedIsReported) {
  host.settings() = {{L"a", L"IF"}};
  for (const HRESULT failure : failures) {
    for (const char* created : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
      recorder.reset();
      // The first table is that of the rule's name.
      host.calls().fail(created, {failure, Fault::Out::null}, 2);
      EXPECT_FALSE(find_users()) << created;
      EXPECT_THAT(reports(), ElementsAre(caught(failure))) << created;
    }
  }
}

TEST_F(RuleUsers, NameThatCannotBeReadIsReportedAndCountsAsEmpty) {
  host.settings() = {{L"a", L"IF"}, {L"b", L""}};
  host.calls().fail("IkvTable::GetRowCount", {E_FAIL});
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(L"b"));
  EXPECT_THAT(reports(), ElementsAre(list_test::failed("expiration_rule_name", 165, E_FAIL),
                                     list_test::caught("expiration_rule_name", 175, E_FAIL)));
}

/// A host call that fails in the second of three settings, which all use the rule.
struct ReportedFault {
  const char* name;
  const char* call;
  long number;  ///< of the call with that name, from the first one of the lookup on
  int line;
};

class RuleUsersFault : public RuleUsers, public testing::WithParamInterface<ReportedFault> {
 protected:
  RuleUsersFault() { host.settings() = {{L"a", L"IF"}, {L"b", L"IF"}, {L"c", L"IF"}}; }
};

TEST_P(RuleUsersFault, IsReportedAndEndsTheLookup) {
  for (const HRESULT failure : failures) {
    recorder.reset();
    host.calls().fail(GetParam().call, {failure}, GetParam().number);
    EXPECT_TRUE(find_users());
    EXPECT_THAT(users, ElementsAre(L"a"));
    EXPECT_THAT(reports(), ElementsAre(failed(GetParam().line, failure), caught(failure)));
  }
}

TEST_P(RuleUsersFault, WithAPositiveResultGoesOn) {
  host.calls().fail(GetParam().call, {S_FALSE, Fault::Out::given}, GetParam().number);
  EXPECT_TRUE(find_users());
  EXPECT_THAT(users, ElementsAre(L"a", L"b", L"c"));
  EXPECT_THAT(reports(), IsEmpty());
}

// The rule's own name takes the first lookup and the first text of field 1077.
INSTANTIATE_TEST_SUITE_P(All, RuleUsersFault,
                         testing::Values(ReportedFault{"RuleName", "IkvField::GetText(1077)", 3, 139},
                                         ReportedFault{"SettingField", "IkvTable::GetFieldByID(209)", 2, 142},
                                         ReportedFault{"SettingName", "IkvField::GetText(209)", 2, 145}),
                         [](const auto& test) { return test.param.name; });

TEST_F(RuleUsers, FailureBeforeAnyMatchFindsNone) {
  host.settings() = {{L"a", L"IF"}};
  host.calls().fail("IkvField::GetText(209)", {E_FAIL});
  EXPECT_FALSE(find_users());
  EXPECT_THAT(reports(), ElementsAre(failed(145, E_FAIL), caught(E_FAIL)));
}

/// A host call with an odd result in the second of three settings, which all use the rule; it is not reported.
struct QuietFault {
  const char* name;
  const char* call;
  long number;
  Fault fault;
  Names users;
};

class RuleUsersOddity : public RuleUsers, public testing::WithParamInterface<QuietFault> {
 protected:
  RuleUsersOddity() { host.settings() = {{L"a", L"IF"}, {L"b", L"IF"}, {L"c", L"IF"}}; }
};

TEST_P(RuleUsersOddity, IsNotReported) {
  host.calls().fail(GetParam().call, GetParam().fault, GetParam().number);
  EXPECT_EQ(!GetParam().users.empty(), find_users());
  EXPECT_EQ(GetParam().users, users);
  EXPECT_THAT(reports(), IsEmpty());
}

constexpr char rule_field[] = "IkvTable::GetFieldByID(1077)";
constexpr char setting_field[] = "IkvTable::GetFieldByID(209)";

INSTANTIATE_TEST_SUITE_P(
    All, RuleUsersOddity,
    testing::Values(
        QuietFault{"RuleFieldIsMissing", rule_field, 3, {S_FALSE, Fault::Out::null}, {L"a", L"c"}},
        QuietFault{"RuleFieldIsNull", rule_field, 3, {S_OK, Fault::Out::null}, {L"a", L"c"}},
        QuietFault{"RuleFieldFails", rule_field, 3, {E_FAIL}, {L"a", L"c"}},
        QuietFault{"RuleFieldComesWithAnotherAnswer", rule_field, 3, {S_FALSE, Fault::Out::given}, {L"a", L"c"}},
        QuietFault{"RuleNameIsNull", "IkvField::GetText(1077)", 3, {S_OK, Fault::Out::null}, {L"a", L"c"}},
        QuietFault{"SettingFieldIsMissing", setting_field, 2, {S_FALSE, Fault::Out::null}, {L"a", L"c"}},
        QuietFault{"SettingFieldIsNull", setting_field, 2, {S_OK, Fault::Out::null}, {L"a", L"c"}},
        QuietFault{"SettingFieldIsNotFilledIn", setting_field, 2, {S_OK}, {L"a", L"c"}},
        QuietFault{"SettingNameIsNull", "IkvField::GetText(209)", 2, {S_OK, Fault::Out::null}, {L"a", L"", L"c"}},
        QuietFault{"LoadFails", "IkvSymbolSourceService::load_symbol_source_settings", 1, {E_FAIL}, {}},
        QuietFault{"MoveFirstFails", "IkvTable::MoveFirst", 2, {E_FAIL}, {L"a", L"b", L"c"}},
        QuietFault{"MoveNextFails", "IkvTable::MoveNext", 1, {E_FAIL}, {L"a", L"a", L"b", L"c"}},
        QuietFault{"EndComesWithAFailure", "IkvTable::IsEOF", 2, {E_FAIL, Fault::Out::given}, {L"a", L"b", L"c"}},
        QuietFault{"EndIsNotFilledInOnce", "IkvTable::IsEOF", 2, {E_FAIL}, {L"a", L"b", L"c"}},
        QuietFault{"EndIsNotFilledInAtTheStart", "IkvTable::IsEOF", 1, {E_FAIL}, {}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace list_test
