#include "FailingNew.h"
#include "FaultLoop.h"
#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "LookupTest.h"
#include "RaisedException.h"
#include "SentMessages.h"

ZD_IMPORT_PROBE(CoCreateInstance, CreationProbe);
ZD_IMPORT_PROBE(SysStringLen, StringLengthProbe);

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Item = RuleList::Row;
using Items = RuleList::Rows;

std::string caught(HRESULT hresult) { return list_test::caught("update_expiration_rule_list", 123, hresult); }

class Refill : public ListDialogTest {
 protected:
  Items shown() {
    Items items;
    open([&](RuleList& list) { items = list.rows(); });
    return items;
  }
};

TEST_F(Refill, MakesTheCallsOfOnePass) {
  store_rules({L"B", L"A"});
  shown();
  EXPECT_THAT(
      calls(),
      ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                  "IkvRuleFilter::SetRuleID(0)", "IkvExpirationRuleService::load_rules(object, object)",
                  "IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::GetFieldByID(1077)", "IkvField::GetText(1077)",
                  "IkvTable::GetFieldByID(1025)", "IkvField::GetLong(1025)", "IkvTable::MoveNext", "IkvTable::IsEOF",
                  "IkvTable::GetFieldByID(1077)", "IkvField::GetText(1077)", "IkvTable::GetFieldByID(1025)",
                  "IkvField::GetLong(1025)", "IkvTable::MoveNext", "IkvTable::IsEOF"));
}

/// The messages that the list view gets while `act` runs, in words.
std::vector<std::string> painting_messages(const RuleList& list, const std::function<void()>& act) {
  std::vector<std::string> messages;
  const SentMessages watch([&](const CWPSTRUCT& message) {
    if (message.hwnd != list.view()) return;
    switch (message.message) {
      case WM_SETREDRAW:
        messages.emplace_back(message.wParam ? "paint" : "hold the painting");
        break;
      case LVM_DELETEALLITEMS:
        messages.emplace_back("delete all items");
        break;
      case LVM_SETITEMCOUNT:
        messages.push_back("expect " + std::to_string(message.wParam) + " items");
        break;
      case LVM_INSERTITEMW:
        messages.emplace_back("insert an item");
        break;
      default:
        break;
    }
  });
  act();
  return messages;
}

TEST_F(Refill, PaintsNothingUntilTheListIsComplete) {
  store_rules({L"B", L"A"});
  open([](RuleList& list) {
    EXPECT_THAT(painting_messages(list, [&] { list.dialog().update_expiration_rule_list(); }),
                ElementsAre("hold the painting", "delete all items", "expect 2 items", "insert an item",
                            "insert an item", "paint"));
  });
}

TEST_F(Refill, PaintsAgainAlsoWhenItFails) {
  store_rules({L"A"});
  open([&](RuleList& list) {
    host.calls().fail("kvTable::CreateInstance", {E_FAIL, Fault::Out::null});
    EXPECT_THAT(painting_messages(list, [&] { list.dialog().update_expiration_rule_list(); }),
                ElementsAre("hold the painting", "delete all items", "paint"));
    RECT changed = {};
    EXPECT_TRUE(GetUpdateRect(list.view(), &changed, FALSE)) << "and shows that it is empty";
  });
}

TEST_F(Refill, ReplacesWhatTheListHeld) {
  store_rules({L"A", L"B"});
  open([&](RuleList& list) {
    host.rules() = {{9, L"Z"}, {2, L"B, renamed"}};
    list.dialog().update_expiration_rule_list();
    EXPECT_EQ(Items({{L"B, renamed", 2}, {L"Z", 9}}), list.rows());
  });
}

TEST_F(Refill, ThatBeganLastWins) {
  store_rules({L"B", L"A"});
  open([&](RuleList& list) {
    for (const char* call : {"IkvTable::MoveFirst", "IkvTable::MoveNext", "IkvField::GetLong(1025)"}) {
      host.rules() = {{1, L"B"}, {2, L"A"}};
      host.calls().inside(call, [&] {
        host.rules() = {{3, L"C"}};
        list.dialog().update_expiration_rule_list();
      });
      list.dialog().update_expiration_rule_list();
      EXPECT_EQ((Items{{L"C", 3}}), list.rows()) << call;
    }
  });
}

TEST_F(Refill, ShowsBothOfTwoRulesWithOneName) {
  host.rules() = {{1, L"same"}, {2, L"same"}, {3, L"A"}};
  EXPECT_THAT(shown(), testing::UnorderedElementsAre(Item{L"A", 3}, Item{L"same", 1}, Item{L"same", 2}));
}

TEST_F(Refill, ShowsARuleWithoutAName) {
  host.rules() = {{1, L"A"}, {2, L"B"}};
  host.calls().fail("IkvField::GetText(1077)", {S_OK, Fault::Out::null}, 2);
  EXPECT_EQ(Items({{L"", 2}, {L"A", 1}}), shown());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(Refill, ShowsNamesAsTheyAre) {
  const std::wstring longest(63, L'字');
  const Names names = {L"\"quoted\" %s %n &", L"\U0001F4C8", longest};
  store_rules(names);
  const Items items = shown();
  for (std::size_t index = 0; index < names.size(); ++index) {
    EXPECT_THAT(items, testing::Contains(Item{names[index], static_cast<LPARAM>(index) + 1}));
  }
}

TEST_F(Refill, KeepsNumbersOfEverySize) {
  host.rules() = {{0x7FFFFFFF, L"A"}, {-0x7FFFFFFF - 1, L"B"}, {-1, L"C"}};
  EXPECT_EQ(Items({{L"A", 0x7FFFFFFF}, {L"B", -0x7FFFFFFFLL - 1}, {L"C", -1}}), shown());
}

TEST_F(Refill, TableThatCannotBeCreatedIsReportedAndTheDialogStaysOpen) {
  store_rules({L"A"});
  for (const HRESULT failure : failures) {
    for (const char* created : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
      recorder.reset();
      host.calls().fail(created, {failure, Fault::Out::null});
      EXPECT_THAT(shown(), IsEmpty()) << created;
      EXPECT_THAT(reports(), ElementsAre(caught(failure))) << created;
    }
  }
}

TEST_F(Refill, MissingRuleServiceIsReported) {
  block.rules = nullptr;
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_THAT(reports(), ElementsAre(caught(E_POINTER)));
}

TEST_F(Refill, ExceptionOfAnyKindIsReportedAndTheDialogStaysOpen) {
  store_rules({L"A"});
  for (const auto& exception : test_support::raised_exceptions) {
    recorder.reset();
    CreationProbe creations;
    creations.replace([&](const auto&...) {
      exception.raise();
      return S_OK;
    });
    EXPECT_THAT(shown(), IsEmpty()) << exception.name;
    EXPECT_THAT(reports(), ElementsAre(test_support::traced(exception, "ExpirationRulesListDialog.cpp", 123,
                                                            "update_expiration_rule_list")));
  }
}

/// A host call that fails among three rules, what is shown then, and which lines of the field helper report it.
struct FaultCase {
  const char* name;
  const char* call;
  long number;
  Fault fault;
  Items items;
  std::vector<std::string> reports;
};

class RefillFault : public Refill, public testing::WithParamInterface<FaultCase> {};

TEST_P(RefillFault, ShowsTheRowsThatWereRead) {
  store_rules({L"A", L"B", L"C"});
  host.calls().fail(GetParam().call, GetParam().fault, GetParam().number);
  EXPECT_EQ(GetParam().items, shown());
  std::vector<std::string> expected = GetParam().reports;
  for (std::string& report : expected) report.insert(report.find(':'), " | zdStorageGetFieldHelper.h") += " GetField";
  EXPECT_EQ(expected, reports());
}

constexpr Fault::Out null = Fault::Out::null;
constexpr Fault::Out given = Fault::Out::given;
const Items all = {{L"A", 1}, {L"B", 2}, {L"C", 3}};
const Items nameless = {{L"", 2}, {L"A", 1}, {L"C", 3}};
const Items numberless = {{L"A", 1}, {L"B", 0}, {L"C", 3}};

INSTANTIATE_TEST_SUITE_P(
    Walk, RefillFault,
    testing::Values(
        FaultCase{"FilterFails", "IkvRuleFilter::SetRuleID", 1, {E_FAIL}, all, {}},
        FaultCase{"LoadFails", "IkvExpirationRuleService::load_rules", 1, {E_FAIL}, {}, {}},
        FaultCase{"LoadFailsAfterItsWork", "IkvExpirationRuleService::load_rules", 1, {E_FAIL, given}, all, {}},
        FaultCase{"MoveFirstFails", "IkvTable::MoveFirst", 1, {RPC_E_DISCONNECTED}, all, {}},
        FaultCase{"MoveNextStays", "IkvTable::MoveNext", 1, {E_FAIL}, {{L"A", 1}, {L"A", 1}, {L"B", 2}, {L"C", 3}}, {}},
        FaultCase{"EndIsNotFilledInOnce", "IkvTable::IsEOF", 2, {E_FAIL}, all, {}},
        FaultCase{"EndComesWithAFailure", "IkvTable::IsEOF", 2, {E_OUTOFMEMORY, given}, all, {}}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Name, RefillFault,
    testing::Values(
        FaultCase{"FieldFails",
                  "IkvTable::GetFieldByID(1077)",
                  2,
                  {E_FAIL},
                  nameless,
                  {"ASSERT field != 0:37", "ASSERT 80004005:38"}},
        FaultCase{"FieldIsMissing",
                  "IkvTable::GetFieldByID(1077)",
                  2,
                  {S_FALSE, null},
                  nameless,
                  {"ASSERT field != 0:37", "ASSERT 00000001:38"}},
        FaultCase{"FieldIsNull", "IkvTable::GetFieldByID(1077)", 2, {S_OK, null}, nameless, {"ASSERT field != 0:37"}},
        FaultCase{"TextFails", "IkvField::GetText", 2, {RPC_E_DISCONNECTED}, nameless, {"ASSERT 80010108:42"}},
        FaultCase{"TextComesWithAnotherAnswer", "IkvField::GetText", 2, {S_FALSE, given}, all, {"ASSERT 00000001:42"}}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Number, RefillFault,
    testing::Values(FaultCase{"FieldFails",
                              "IkvTable::GetFieldByID(1025)",
                              2,
                              {E_NOINTERFACE},
                              numberless,
                              {"ASSERT field != 0:21", "ASSERT 80004002:22"}},
                    FaultCase{"FieldComesWithAnotherAnswer",
                              "IkvTable::GetFieldByID(1025)",
                              2,
                              {S_FALSE, given},
                              all,
                              {"ASSERT 00000001:22"}},
                    FaultCase{
                        "NumberFails", "IkvField::GetLong", 2, {E_OUTOFMEMORY}, numberless, {"ASSERT 8007000e:26"}}),
    [](const auto& test) { return test.param.name; });

TEST_F(Refill, OutOfMemoryMidwayIsReportedAndKeepsTheRowsReadUntilThen) {
  store_rules({L"A, long enough for the heap", L"B, long enough for the heap", L"C, long enough for the heap"});
  open([&](RuleList& list) {
    {
      test_support::FailingNew memory;
      StringLengthProbe lengths;
      // The length of a name is read twice before the name is copied.
      lengths.replace([&](BSTR text) {
        if (lengths.calls() == 4) memory.fail_next();
        return lengths.original(text);
      });
      list.dialog().update_expiration_rule_list();
      EXPECT_TRUE(memory.has_failed());
    }
    EXPECT_EQ(Items({{L"A, long enough for the heap", 1}}), list.rows());
  });
  EXPECT_THAT(reports(), ElementsAre("TRACE std::exception - std::bad_alloc; FILE - ExpirationRulesListDialog.cpp, "
                                     "LINE - 123 | ExpirationRulesListDialog.cpp:123 update_expiration_rule_list"));
}

TEST_F(Refill, AnyFailingAllocationLeavesTheDialogUsable) {
  const Names names = {L"A, long enough for the heap", L"B, long enough for the heap"};
  store_rules(names);
  open([&](RuleList& list) {
    test_support::fail_each_allocation([&](std::size_t number) {
      bool failed = false;
      {
        const test_support::FailingNew memory(number);
        list.dialog().update_expiration_rule_list();
        failed = memory.has_failed();
      }
      list.dialog().update_expiration_rule_list();
      EXPECT_EQ(names, list.names());
      return failed;
    });
  });
}

}  // namespace
}  // namespace list_test
