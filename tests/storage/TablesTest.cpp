#include "References.h"
#include "StorageTest.h"
#include "Tables.h"

namespace storage_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr HRESULT no_memory = E_OUTOFMEMORY;

class RulesTable : public StorageTest {
 protected:
  RulesTable() {
    host.rules().push_back({3, L"IF"});
    host.rules().push_back({7, L"CU"});
  }

  static long rows_of(const IkvTablePtr& opened) {
    long count = -1;
    opened->GetRowCount(&count);
    return count;
  }
};

TEST_F(RulesTable, IsCreatedBeforeTheFilterAndLoadedThroughIt) {
  const IkvTablePtr opened = open_rules_table(block, 7);
  EXPECT_THAT(calls(),
              ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                          "IkvRuleFilter::SetRuleID(7)", "IkvExpirationRuleService::load_rules(object, object)"));
}

TEST_F(RulesTable, OfOneNumberHoldsThatRule) { EXPECT_EQ(1, rows_of(open_rules_table(block, 7))); }

TEST_F(RulesTable, OfNumberZeroHoldsEveryRule) { EXPECT_EQ(2, rows_of(open_rules_table(block, 0))); }

TEST_F(RulesTable, OfAnUnknownNumberIsEmpty) { EXPECT_EQ(0, rows_of(open_rules_table(block, 8))); }

TEST_F(RulesTable, IsAllThatIsLeftToTheCaller) {
  const IkvTablePtr opened = open_rules_table(block, 0);
  EXPECT_THAT(host.living(),
              testing::UnorderedElementsAre("kvTable with references: 1", "kvStorage with references: 4"));
}

TEST_F(RulesTable, IsEmptyWhenTheLoadFails) {
  host.calls().fail("IkvExpirationRuleService::load_rules", {E_FAIL});
  EXPECT_EQ(0, rows_of(open_rules_table(block, 0)));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RulesTable, IsLoadedAlsoWhenTheFilterFails) {
  host.calls().fail("IkvRuleFilter::SetRuleID", {E_FAIL});
  EXPECT_EQ(2, rows_of(open_rules_table(block, 7)));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RulesTable, ThrowsTheFailureOfItsCreation) {
  host.calls().fail("kvTable::CreateInstance", {no_memory});
  EXPECT_EQ(no_memory, thrown_by([&] { open_rules_table(block, 7); }));
  EXPECT_THAT(calls(), ElementsAre("kvTable::CreateInstance(IkvTable)"));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RulesTable, ThrowsTheFailureOfTheFiltersCreation) {
  host.calls().fail("kvRuleFilter::CreateInstance", {no_memory});
  EXPECT_EQ(no_memory, thrown_by([&] { open_rules_table(block, 7); }));
  EXPECT_THAT(host.living(), ElementsAre("kvStorage with references: 4")) << "the table is released";
}

TEST_F(RulesTable, ThrowsWhenAClassGivesNoObject) {
  for (const char* creation : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
    host.calls().fail(creation, {S_OK, Fault::Out::null});
    EXPECT_EQ(E_POINTER, thrown_by([&] { open_rules_table(block, 7); })) << creation;
  }
}

TEST_F(RulesTable, ThrowsWithoutARuleService) {
  block.rules = nullptr;
  EXPECT_EQ(E_POINTER, thrown_by([&] { open_rules_table(block, 7); }));
}

class SettingsTable : public StorageTest {
 protected:
  SettingsTable() { host.settings().push_back({L"IF main", L"IF"}); }
};

TEST_F(SettingsTable, IsLoadedWithoutTheFilterThatIsCreated) {
  const IkvTablePtr opened = open_symbol_source_settings_table(block);
  EXPECT_THAT(calls(), ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                                   "IkvSymbolSourceService::load_symbol_source_settings(null, object)"));
  long count = 0;
  opened->GetRowCount(&count);
  EXPECT_EQ(1, count);
}

TEST_F(SettingsTable, FetchesAMissingServiceFromTheMainInterfaceAndKeepsIt) {
  block.symbol_sources = nullptr;
  host.record_queries(true);
  open_symbol_source_settings_table(block);
  EXPECT_TRUE(block.symbol_sources);
  open_symbol_source_settings_table(block);
  EXPECT_THAT(host.calls().all("kvStorage::QueryInterface"),
              ElementsAre("kvStorage::QueryInterface(IkvSymbolSourceService)"));
}

TEST_F(SettingsTable, FetchesTheServiceAfterTheFilterIsCreated) {
  block.symbol_sources = nullptr;
  host.record_queries(true);
  open_symbol_source_settings_table(block);
  EXPECT_THAT(calls(), ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                                   "kvStorage::QueryInterface(IkvSymbolSourceService)",
                                   "IkvSymbolSourceService::load_symbol_source_settings(null, object)"));
}

TEST_F(SettingsTable, IsEmptyWhenTheLoadFails) {
  host.calls().fail("IkvSymbolSourceService::load_symbol_source_settings", {E_FAIL});
  const IkvTablePtr opened = open_symbol_source_settings_table(block);
  long count = -1;
  opened->GetRowCount(&count);
  EXPECT_EQ(0, count);
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(SettingsTable, ThrowsTheFailureOfACreation) {
  for (const char* creation : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
    host.calls().fail(creation, {no_memory});
    EXPECT_EQ(no_memory, thrown_by([&] { open_symbol_source_settings_table(block); })) << creation;
  }
}

TEST_F(SettingsTable, ThrowsWhenTheStorageObjectHasNoService) {
  block.symbol_sources = nullptr;
  host.record_queries(true);
  host.calls().fail("kvStorage::QueryInterface", {E_NOINTERFACE, Fault::Out::null});
  EXPECT_EQ(E_POINTER, thrown_by([&] { open_symbol_source_settings_table(block); }));
  EXPECT_FALSE(block.symbol_sources);
}

TEST_F(SettingsTable, ThrowsAnyOtherFailureToGetTheService) {
  block.symbol_sources = nullptr;
  host.record_queries(true);
  host.calls().fail("kvStorage::QueryInterface", {RPC_E_DISCONNECTED});
  EXPECT_EQ(RPC_E_DISCONNECTED, thrown_by([&] { open_symbol_source_settings_table(block); }));
}

TEST_F(SettingsTable, ThrowsForAnEmptyBlock) {
  block = {};
  EXPECT_EQ(E_POINTER, thrown_by([&] { open_symbol_source_settings_table(block); }));
}

class NewRuleTable : public StorageTest {
 protected:
  IkvTablePtr target;
};

TEST_F(NewRuleTable, IsCreatedRunQueriedForItsInterfaceAndGivenTheFieldsOfARule) {
  host.record_queries(true);
  create_rule_table(target);
  EXPECT_THAT(calls(), ElementsAre("kvTable::CreateInstance(IUnknown)", "IRunnableObject::Run",
                                   "kvTable::QueryInterface(IkvTable)", "IkvTable::AddField(1025, 0, 0, 0)",
                                   "IkvTable::AddField(1077, 0, 0, 0)", "IkvTable::AddField(1078, 0, 0, 0)",
                                   "IkvTable::AddField(1079, 0, 0, 0)", "IkvTable::AddField(1080, 0, 0, 0)",
                                   "IkvTable::AddField(1081, 0, 0, 0)", "IkvTable::AddField(1082, 0, 0, 0)",
                                   "IkvTable::AddField(1083, 0, 0, 0)", "IkvTable::AddField(1084, 0, 0, 0)",
                                   "IkvTable::AddField(1085, 0, 0, 0)", "IkvTable::AddField(1160, 0, 0, 0)"));
}

TEST_F(NewRuleTable, IsHeldByTheTargetAlone) {
  host.calls().inside("IkvTable::AddField(1025, 0, 0, 0)", [&] {
    EXPECT_EQ(1u, test_support::references(target)) << "already when its fields are declared";
  });
  create_rule_table(target);
  EXPECT_THAT(host.living(),
              testing::UnorderedElementsAre("kvTable with references: 1", "kvStorage with references: 4"));
}

TEST_F(NewRuleTable, StaysEmptyWhenAStepFails) {
  host.record_queries(true);
  const char* const steps[] = {"kvTable::CreateInstance(IUnknown)", "IRunnableObject::Run",
                               "kvTable::QueryInterface(IkvTable)"};
  for (const char* step : steps) {
    for (const Fault::Out out : {Fault::Out::untouched, Fault::Out::null}) {
      host.calls().forget();
      target = table({{{KVFIELD_RULE_ID, 1}}});
      host.calls().fail(step, {no_memory, out});
      EXPECT_EQ(E_POINTER, thrown_by([&] { create_rule_table(target); })) << step;
      EXPECT_FALSE(target) << step;
      EXPECT_THAT(host.calls().all("IkvTable::AddField"), IsEmpty()) << step;
      EXPECT_THAT(host.living(), ElementsAre("kvStorage with references: 4")) << step;
    }
  }
}

TEST_F(NewRuleTable, StaysEmptyWhenAStepSucceedsWithoutAnObject) {
  host.record_queries(true);
  for (const char* step : {"kvTable::CreateInstance(IUnknown)", "kvTable::QueryInterface(IkvTable)"}) {
    host.calls().fail(step, {S_OK, Fault::Out::null});
    EXPECT_EQ(E_POINTER, thrown_by([&] { create_rule_table(target); })) << step;
    EXPECT_FALSE(target) << step;
  }
}

TEST_F(NewRuleTable, IsCreatedWithoutAFieldThatTheHostRefuses) {
  host.calls().fail("IkvTable::AddField(1078, 0, 0, 0)", {E_FAIL});
  create_rule_table(target);
  EXPECT_EQ(11u, host.calls().all("IkvTable::AddField").size());
  EXPECT_THAT(reports(), IsEmpty());
}

}  // namespace
}  // namespace storage_test
