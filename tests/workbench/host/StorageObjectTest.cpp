#include <gmock/gmock.h>

#include <set>

#include "Bstr.h"
#include "FailingRuleStore.h"
#include "FaultLoop.h"
#include "HostObjects.h"
#include "MemoryRuleStore.h"
#include "RuleFilterObject.h"
#include "StorageObject.h"
#include "StoreResult.h"
#include "StoreSamples.h"
#include "TableObject.h"

using namespace workbench;

namespace {

/// A storage object over a store in memory that can fail, used through its interfaces only.
class StorageObjectTest : public HostObjects {
 protected:
  StorageObjectTest() { use_store(inner_); }

  void use_store(std::shared_ptr<RuleStore> store) {
    rules_ = base::ComPtr<IDispatch>(
        create_storage_object(std::move(store),
                              {.failed =
                                   [this](const StoreError& error, const Rule* unsaved) {
                                     heard_.push_back(error.kind());
                                     unsaved_.push_back(unsaved ? std::optional(*unsaved) : std::nullopt);
                                   },
                               .restored = [this](const StoredRule& added) { restored_.push_back(added.number); }}),
        false);
    settings_ = rules_;
  }

  static base::ComPtr<IkvTable> make_table() { return {static_cast<IkvTable*>(new TableObject), false}; }
  static base::ComPtr<IkvRuleFilter> make_filter(long number) {
    base::ComPtr<IkvRuleFilter> filter(static_cast<IkvRuleFilter*>(new RuleFilterObject), false);
    EXPECT_EQ(filter->SetRuleID(number), S_OK);
    return filter;
  }

  base::ComPtr<IkvTable> load(long number) {
    base::ComPtr<IkvTable> table = make_table();
    EXPECT_EQ(rules_->load_rules(make_filter(number), table), S_OK);
    return table;
  }

  HRESULT add(const Rule& rule, long* number) {
    const _bstr_t name(base::create_bstr(rule.name), false);
    return rules_->add_rule(name, rule.roll_offset, rule.day_type, rule.day_mode, rule.day_of_month, rule.day_month,
                            rule.week_ordinal, rule.weekday, rule.weekday_month, rule.move_to_next_trading_day, number);
  }

  HRESULT update(long number, const Rule& rule) {
    const _bstr_t name(base::create_bstr(rule.name), false);
    return rules_->update_rule(number, name, rule.roll_offset, rule.day_type, rule.day_mode, rule.day_of_month,
                               rule.day_month, rule.week_ordinal, rule.weekday, rule.weekday_month,
                               rule.move_to_next_trading_day);
  }

  std::shared_ptr<MemoryRuleStore> inner_ = std::make_shared<MemoryRuleStore>();
  std::vector<StoreErrorKind> heard_;
  std::vector<std::optional<Rule>> unsaved_;
  std::vector<long> restored_;
  base::ComPtr<IkvExpirationRuleService> rules_;
  base::ComPtr<IkvSymbolSourceService> settings_;
};

/// The rule in the table's current row.
StoredRule row_of(IkvTable* table) {
  StoredRule row{number_in(table, KVFIELD_RULE_ID), 0, {.name = text_in(table, KVFIELD_RULE_NAME)}};
  for (const RuleColumn& column : rule_columns) row.rule.*column.value = number_in(table, column.field);
  return row;
}

TEST_F(StorageObjectTest, ReturnsItsFourInterfacesAndItself) {
  const base::ComPtr<IkvStorage> storage = rules_;
  const base::ComPtr<IkvStorageSession> session = rules_;
  IUnknown* identity = nullptr;
  ASSERT_TRUE(storage && session && settings_);
  EXPECT_EQ(base::ComPtr<IUnknown>(settings_).GetInterfacePtr(), base::ComPtr<IUnknown>(storage).GetInterfacePtr());
  EXPECT_EQ(rules_->QueryInterface(__uuidof(IkvTable), reinterpret_cast<void**>(&identity)), E_NOINTERFACE);
  EXPECT_EQ(identity, nullptr);
  EXPECT_EQ(rules_->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
}

TEST_F(StorageObjectTest, EveryRuleIsOneRowWithTheFirstCurrent) {
  for (const std::wstring& name : awkward_names()) inner_->add_rule(sample_rule(name));
  const base::ComPtr<IkvTable> table = load(0);
  EXPECT_EQ(row_count(table), static_cast<long>(awkward_names().size()));
  long number = 1;
  for (const std::wstring& name : awkward_names()) {
    EXPECT_EQ(row_of(table), (StoredRule{number++, 0, sample_rule(name)}));
    table->MoveNext();
  }
  EXPECT_TRUE(at_end(table));
}

TEST_F(StorageObjectTest, FilterSelectsOneRuleOrNone) {
  inner_->replace_content(sample_content());
  const base::ComPtr<IkvTable> one = load(2);
  EXPECT_EQ(row_count(one), 1);
  EXPECT_EQ(row_of(one), (StoredRule{2, 0, sample_rule(L"second")}));
  EXPECT_EQ(row_count(load(7)), 0);
  EXPECT_EQ(row_count(load(-1)), 0);
  EXPECT_TRUE(field_of(load(7), KVFIELD_RULE_NAME));
  const base::ComPtr<IkvTable> all = make_table();
  EXPECT_EQ(rules_->load_rules(nullptr, all), S_OK);
  EXPECT_EQ(row_count(all), 2);
}

TEST_F(StorageObjectTest, SettingsAreRowsInTheirOrder) {
  inner_->replace_content(sample_content());
  const base::ComPtr<IkvTable> table = make_table();
  EXPECT_EQ(settings_->load_symbol_source_settings(nullptr, table), S_OK);
  for (const SymbolSourceSetting& setting : sample_content().settings) {
    EXPECT_EQ(text_in(table, KVFIELD_SETTING_NAME), setting.name);
    EXPECT_EQ(text_in(table, KVFIELD_RULE_NAME), setting.rule_name);
    table->MoveNext();
  }
  EXPECT_TRUE(at_end(table));
}

TEST_F(StorageObjectTest, OnlyAnEmptyTableOfTheHostIsFilled) {
  inner_->replace_content(sample_content());
  const base::ComPtr<IkvTable> filled = load(0);
  EXPECT_EQ(rules_->load_rules(nullptr, filled), E_INVALIDARG);
  EXPECT_EQ(settings_->load_symbol_source_settings(nullptr, filled), E_INVALIDARG);
  EXPECT_EQ(row_count(filled), 2);
  EXPECT_EQ(rules_->load_rules(nullptr, nullptr), E_INVALIDARG);
  EXPECT_EQ(settings_->load_symbol_source_settings(nullptr, nullptr), E_INVALIDARG);
  EXPECT_TRUE(heard_.empty());
}

TEST_F(StorageObjectTest, TableWithDeclaredFieldsIsFilled) {
  inner_->replace_content(sample_content());
  const base::ComPtr<IkvTable> table = make_table();
  table->AddField(KVFIELD_WEEKDAY, 0, 0, 0);
  const base::ComPtr<IkvField> weekday = field_of(table, KVFIELD_WEEKDAY);
  EXPECT_EQ(rules_->load_rules(nullptr, table), S_OK);
  long value = 0;
  EXPECT_EQ(weekday->GetLong(&value), S_OK);
  EXPECT_EQ(value, 6);
  EXPECT_EQ(row_of(table).rule, sample_rule(L"first"));
}

TEST_F(StorageObjectTest, AddedRuleIsStoredWholeAndNumbered) {
  for (const std::wstring& name : awkward_names()) {
    long number = 0;
    EXPECT_EQ(add(sample_rule(name), &number), S_OK);
    EXPECT_EQ(inner_->try_load_rule(number)->rule, sample_rule(name));
  }
  EXPECT_TRUE(heard_.empty());
}

TEST_F(StorageObjectTest, UpdateRewritesTheRule) {
  inner_->replace_content(sample_content());
  EXPECT_EQ(update(2, {.name = L"new name", .roll_offset = 3}), S_OK);
  EXPECT_EQ(inner_->try_load_rule(2)->rule, (Rule{.name = L"new name", .roll_offset = 3}));
}

TEST_F(StorageObjectTest, DeleteReturnsTheFlag) {
  inner_->replace_content(sample_content());
  long ok = 5;
  EXPECT_EQ(rules_->delete_rule(2, &ok), S_OK);
  EXPECT_EQ(ok, 1);
  EXPECT_EQ(rules_->delete_rule(2, &ok), STG_E_FILENOTFOUND);
  EXPECT_EQ(ok, 0);
  EXPECT_EQ(rules_->delete_rule(1, &ok), STG_E_INUSE);
  EXPECT_EQ(ok, 0);
  EXPECT_EQ(heard_, (std::vector{StoreErrorKind::not_found, StoreErrorKind::in_use}));
  EXPECT_EQ(inner_->load_rules().size(), 1u);
}

TEST_F(StorageObjectTest, UnselectedComboIsRefusedAndTheOldRuleStaysWhole) {
  inner_->replace_content(sample_content());
  const StoreSnapshot before = snapshot_of(*inner_);
  for (const RuleColumn& column : rule_columns) {
    Rule rule = sample_rule(L"second");
    rule.*column.value = -1;
    long number = 5;
    EXPECT_EQ(update(2, rule), E_INVALIDARG) << column.name;
    EXPECT_EQ(add(rule, &number), E_INVALIDARG) << column.name;
    EXPECT_EQ(number, 0);
  }
  EXPECT_EQ(heard_, std::vector(2 * rule_columns.size(), StoreErrorKind::invalid_value));
  EXPECT_EQ(snapshot_of(*inner_), before);
}

TEST_F(StorageObjectTest, NullNameIsAnEmptyOneAndRefused) {
  long number = 5;
  EXPECT_EQ(rules_->add_rule(nullptr, 0, 0, 0, 1, 1, 1, 1, 1, 0, &number), E_INVALIDARG);
  EXPECT_EQ(number, 0);
}

TEST_F(StorageObjectTest, DuplicateNameIsRefused) {
  inner_->replace_content(sample_content());
  long number = 5;
  EXPECT_EQ(add(sample_rule(L"first"), &number), STG_E_FILEALREADYEXISTS);
  EXPECT_EQ(update(2, sample_rule(L"first")), STG_E_FILEALREADYEXISTS);
  EXPECT_EQ(heard_, std::vector(2, StoreErrorKind::duplicate_name));
}

TEST_F(StorageObjectTest, NullOutPointersAreRefused) {
  EXPECT_EQ(rules_->delete_rule(1, nullptr), E_POINTER);
  EXPECT_EQ(add(sample_rule(L"gold"), nullptr), E_POINTER);
  EXPECT_TRUE(inner_->load_rules().empty());
}

TEST_F(StorageObjectTest, RuleThatChangedSinceItWasLoadedIsNotOverwritten) {
  inner_->replace_content(sample_content());
  load(2);
  inner_->update_rule(2, sample_rule(L"theirs"), std::nullopt);
  load(0);
  EXPECT_EQ(update(2, sample_rule(L"mine")), STG_E_NOTCURRENT);
  EXPECT_EQ(heard_, std::vector{StoreErrorKind::changed});
  EXPECT_EQ(inner_->try_load_rule(2)->rule.name, L"theirs");
  load(2);
  EXPECT_EQ(update(2, sample_rule(L"mine")), S_OK);
  EXPECT_EQ(update(2, sample_rule(L"mine again")), S_OK);
}

TEST_F(StorageObjectTest, RuleThatChangedSinceItWasLoadedIsNotDeleted) {
  inner_->replace_content(sample_content());
  load(2);
  inner_->update_rule(2, sample_rule(L"theirs"), std::nullopt);
  long ok = 5;
  EXPECT_EQ(rules_->delete_rule(2, &ok), STG_E_NOTCURRENT);
  EXPECT_EQ(ok, 0);
  EXPECT_EQ(heard_, std::vector{StoreErrorKind::changed});
  EXPECT_EQ(inner_->try_load_rule(2)->rule.name, L"theirs");
  load(2);
  EXPECT_EQ(rules_->delete_rule(2, &ok), S_OK);
  EXPECT_EQ(ok, 1);
}

TEST_F(StorageObjectTest, EachChangeReachesTheSubscribers) {
  int notified = 0;
  const StoreSubscription subscription = inner_->subscribe([&] { ++notified; });
  long number = 0;
  long ok = 0;
  add(sample_rule(L"gold"), &number);
  update(number, sample_rule(L"silver"));
  rules_->delete_rule(number, &ok);
  EXPECT_EQ(notified, 3);
}

TEST_F(StorageObjectTest, EveryRefusalOfTheStoreIsAFailureAndReachesTheListener) {
  for (int kind = 0; kind <= static_cast<int>(StoreErrorKind::in_use); ++kind) {
    const auto expected = static_cast<StoreErrorKind>(kind);
    test_support::fail_each_call([&](std::size_t failing) -> std::optional<std::string> {
      heard_.clear();
      use_store(std::make_shared<FailingRuleStore>(inner_, static_cast<int>(failing), expected));
      long number = 0;
      const HRESULT results[] = {rules_->load_rules(nullptr, make_table()),
                                 rules_->load_rules(make_filter(1), make_table()),
                                 settings_->load_symbol_source_settings(nullptr, make_table()),
                                 add(sample_rule(L"name " + std::to_wstring(failing)), &number),
                                 update(number, sample_rule(L"x")),
                                 rules_->delete_rule(number, &number)};
      inner_->replace_content({});
      if (failing > std::size(results)) {
        EXPECT_THAT(results, testing::Each(S_OK));
        return std::nullopt;
      }
      EXPECT_EQ(results[failing - 1], store_result(expected));
      EXPECT_TRUE(FAILED(results[failing - 1]));
      EXPECT_FALSE(heard_.empty());
      if (!heard_.empty()) {
        EXPECT_EQ(heard_.front(), expected);
      }
      return "a call of the store";
    });
  }
}

TEST_F(StorageObjectTest, RuleThatWasNotSavedReachesTheListenerWithTheRefusal) {
  inner_->replace_content(sample_content());
  Rule faulty = sample_rule(L"mine");
  faulty.weekday = -1;
  long number = 0;
  EXPECT_EQ(add(sample_rule(L"first"), &number), STG_E_FILEALREADYEXISTS);
  EXPECT_EQ(update(7, sample_rule(L"mine")), STG_E_FILENOTFOUND);
  EXPECT_EQ(update(1, faulty), E_INVALIDARG);
  EXPECT_EQ(rules_->delete_rule(7, &number), STG_E_FILENOTFOUND);
  EXPECT_EQ(unsaved_,
            (std::vector<std::optional<Rule>>{sample_rule(L"first"), sample_rule(L"mine"), faulty, std::nullopt}));
}

TEST_F(StorageObjectTest, ResultsDifferByTheReasonOfTheRefusal) {
  std::set<HRESULT> results;
  for (int kind = 0; kind <= static_cast<int>(StoreErrorKind::in_use); ++kind)
    results.insert(store_result(static_cast<StoreErrorKind>(kind)));
  EXPECT_EQ(results.size(), static_cast<std::size_t>(StoreErrorKind::in_use) + 1);
}

TEST_F(StorageObjectTest, FailedLoadLeavesTheTableEmpty) {
  inner_->replace_content(sample_content());
  use_store(std::make_shared<FailingRuleStore>(inner_, 1));
  const base::ComPtr<IkvTable> table = make_table();
  EXPECT_EQ(rules_->load_rules(nullptr, table), store_result(StoreErrorKind::unavailable));
  EXPECT_EQ(row_count(table), 0);
  EXPECT_EQ(rules_->load_rules(nullptr, table), S_OK);
  EXPECT_EQ(row_count(table), 2);
}

TEST_F(StorageObjectTest, ListenerThatThrowsDoesNotEscape) {
  const base::ComPtr<IkvExpirationRuleService> service = base::ComPtr<IDispatch>(
      create_storage_object(inner_, {[](const StoreError&, const Rule*) { throw 1; }, nullptr}), false);
  long ok = 5;
  EXPECT_TRUE(FAILED(service->delete_rule(7, &ok)));
  EXPECT_EQ(ok, 0);
}

TEST_F(StorageObjectTest, RuleIsRestoredWhenItIsAddedByWhoHoldsTheTableOfAMissingOne) {
  inner_->replace_content(sample_content());
  long number = 0;
  {
    const base::ComPtr<IkvTable> missing = load(7);
    EXPECT_EQ(row_count(load(0)), 2) << "the names are compared before a save";
    EXPECT_EQ(add(sample_rule(L"first"), &number), STG_E_FILEALREADYEXISTS);
    EXPECT_TRUE(restored_.empty());
    EXPECT_EQ(add(sample_rule(L"again"), &number), S_OK);
    EXPECT_EQ(restored_, std::vector{number});
    EXPECT_EQ(add(sample_rule(L"another"), &number), S_OK);
  }
  EXPECT_EQ(restored_.size(), 1u) << "once for each missing rule";
}

TEST_F(StorageObjectTest, RuleThatIsAddedOtherwiseIsNotRestored) {
  inner_->replace_content(sample_content());
  long number = 0;
  const base::ComPtr<IkvTable> there = load(2);
  load(7);
  EXPECT_EQ(add(sample_rule(L"after a missing one was let go of"), &number), S_OK);
  inner_->replace_content({});
  const base::ComPtr<IkvTable> none = load(0);
  EXPECT_EQ(add(sample_rule(L"into an empty store"), &number), S_OK);
  EXPECT_TRUE(restored_.empty());
}

TEST_F(StorageObjectTest, AddedRuleIsAddedWhateverTheListenerOfRestoredRulesThrows) {
  rules_ = base::ComPtr<IDispatch>(create_storage_object(inner_, {nullptr, [](const StoredRule&) { throw 1; }}), false);
  const base::ComPtr<IkvTable> missing = load(7);
  long number = 0;
  EXPECT_EQ(add(sample_rule(L"gold"), &number), S_OK);
  EXPECT_EQ(number, 1);
}

TEST_F(StorageObjectTest, LateBindingKnowsNoNames) {
  UINT count = 5;
  EXPECT_EQ(rules_->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
  wchar_t text[] = L"load_rules";
  LPOLESTR name = text;
  DISPID id = 0;
  EXPECT_EQ(rules_->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), DISP_E_UNKNOWNNAME);
}

}  // namespace
