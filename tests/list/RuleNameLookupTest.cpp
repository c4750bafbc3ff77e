#include "LookupTest.h"

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RuleNameLookup : public LookupTest {
 protected:
  RuleNameLookup() { host.rules() = {{4, L"IF"}, {5, L"TF"}}; }

  static std::string caught(HRESULT hresult) { return list_test::caught("expiration_rule_name", 175, hresult); }
  static std::string failed(int line, HRESULT hresult) {
    return list_test::failed("expiration_rule_name", line, hresult);
  }
};

TEST_F(RuleNameLookup, ReadsOneRuleByItsNumber) {
  EXPECT_EQ("TF", name_of(5));
  EXPECT_THAT(calls(), ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                                   "IkvRuleFilter::SetRuleID(5)",
                                   "IkvExpirationRuleService::load_rules(object, object)", "IkvTable::GetRowCount",
                                   "IkvTable::MoveFirst", "IkvTable::GetFieldByID(1077)", "IkvField::GetText(1077)"));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleNameLookup, UnknownNumberHasNoName) {
  EXPECT_EQ("", name_of(6));
  EXPECT_EQ("IkvTable::GetRowCount", calls().back());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleNameLookup, NumberThatIsStoredTwiceHasNoName) {
  host.calls().fail("IkvTable::GetRowCount", {S_OK, Fault::Out::number, false, 2});
  EXPECT_EQ("", name_of(5));
  EXPECT_EQ("IkvTable::GetRowCount", calls().back());
}

TEST_F(RuleNameLookup, NullNameIsEmpty) {
  host.odd_values()[KVFIELD_RULE_NAME] = {};
  EXPECT_EQ(0U, dialog.expiration_rule_name(4).length());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleNameLookup, NameIsReadUnchanged) {
  const std::wstring name(L"\"%s\" %n\0\xD800 \U0001F4C8", 12);
  host.rules() = {{4, name}};
  const _bstr_t read = dialog.expiration_rule_name(4);
  EXPECT_EQ(name, std::wstring(static_cast<const wchar_t*>(read), read.length()));
}

TEST_F(RuleNameLookup, FailingRowCountIsReportedAndGivesNoName) {
  for (const HRESULT failure : failures) {
    recorder.reset();
    host.calls().fail("IkvTable::GetRowCount", {failure});
    EXPECT_EQ("", name_of(5));
    EXPECT_THAT(reports(), ElementsAre(failed(165, failure), caught(failure)));
  }
}

TEST_F(RuleNameLookup, RowCountWithAPositiveResultCounts) {
  host.calls().fail("IkvTable::GetRowCount", {S_FALSE, Fault::Out::given});
  EXPECT_EQ("TF", name_of(5));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleNameLookup, RowCountThatIsNotFilledInGivesNoName) {
  host.calls().fail("IkvTable::GetRowCount", {S_OK});
  EXPECT_EQ("", name_of(5));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleNameLookup, TableThatCannotBeCreatedIsReported) {
  for (const HRESULT failure : failures) {
    for (const char* created : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
      recorder.reset();
      host.calls().fail(created, {failure, Fault::Out::null});
      EXPECT_EQ("", name_of(5)) << created;
      EXPECT_THAT(reports(), ElementsAre(caught(failure))) << created;
    }
  }
}

TEST_F(RuleNameLookup, ClassThatCreatesNothingIsReported) {
  host.calls().fail("kvTable::CreateInstance", {S_OK, Fault::Out::null});
  EXPECT_EQ("", name_of(5));
  EXPECT_THAT(reports(), ElementsAre(caught(E_POINTER)));
}

TEST_F(RuleNameLookup, MissingRuleServiceIsReported) {
  block.rules = nullptr;
  EXPECT_EQ("", name_of(5));
  EXPECT_THAT(reports(), ElementsAre(caught(E_POINTER)));
}

struct SilentFault {
  const char* name;
  const char* call;
  Fault fault;
  const char* rule_name;
};

class RuleNameLookupFault : public RuleNameLookup, public testing::WithParamInterface<SilentFault> {};

TEST_P(RuleNameLookupFault, IsNotReported) {
  host.calls().fail(GetParam().call, GetParam().fault);
  EXPECT_EQ(GetParam().rule_name, name_of(5));
  EXPECT_THAT(reports(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, RuleNameLookupFault,
    testing::Values(SilentFault{"LoadFails", "IkvExpirationRuleService::load_rules", {E_FAIL}, ""},
                    SilentFault{"FilterFails", "IkvRuleFilter::SetRuleID", {E_FAIL}, ""},
                    SilentFault{"MoveFirstFails", "IkvTable::MoveFirst", {E_FAIL}, "TF"},
                    SilentFault{"FieldLookupFails", "IkvTable::GetFieldByID", {E_FAIL}, ""},
                    SilentFault{"FieldIsMissing", "IkvTable::GetFieldByID", {S_FALSE, Fault::Out::null}, ""},
                    SilentFault{"FieldIsNull", "IkvTable::GetFieldByID", {S_OK, Fault::Out::null}, ""},
                    SilentFault{"FieldIsNotFilledIn", "IkvTable::GetFieldByID", {S_OK}, ""},
                    SilentFault{
                        "FieldComesWithAnotherAnswer", "IkvTable::GetFieldByID", {S_FALSE, Fault::Out::given}, ""},
                    SilentFault{"FieldComesWithAFailure", "IkvTable::GetFieldByID", {E_FAIL, Fault::Out::given}, ""},
                    SilentFault{"TextFails", "IkvField::GetText", {E_FAIL}, ""},
                    SilentFault{"TextIsNull", "IkvField::GetText", {S_OK, Fault::Out::null}, ""},
                    SilentFault{"TextComesWithAFailure", "IkvField::GetText", {E_FAIL, Fault::Out::given}, "TF"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace list_test
