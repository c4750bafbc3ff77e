#include "StoreContract.h"

using namespace workbench;

namespace {

/// What every store does with rules.
class RuleStoreContract : public StoreContract {};

INSTANTIATE_TEST_SUITE_P(Stores, RuleStoreContract, every_store(), store_name);

TEST_P(RuleStoreContract, NewStoreIsEmpty) { EXPECT_EQ(snapshot_of(*store_), StoreSnapshot()); }

TEST_P(RuleStoreContract, AddedRuleComesBackWithItsNumber) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  EXPECT_GE(added.number, 1);
  EXPECT_EQ(added.rule, sample_rule(L"gold"));
  EXPECT_EQ(store_->try_load_rule(added.number), added);
  EXPECT_EQ(store_->load_rules(), std::vector{added});
}

TEST_P(RuleStoreContract, RulesComeByAscendingNumber) {
  const long last = store_->add_rule(sample_rule(L"z")).number;
  const long next = store_->add_rule(sample_rule(L"a")).number;
  EXPECT_GT(next, last);
  ASSERT_EQ(store_->load_rules().size(), 2u);
  EXPECT_EQ(store_->load_rules()[0].number, last);
  EXPECT_EQ(store_->load_rules()[1].number, next);
}

TEST_P(RuleStoreContract, UnknownNumberFindsNothing) {
  EXPECT_EQ(store_->try_load_rule(1), std::nullopt);
  EXPECT_EQ(store_->try_load_rule(0), std::nullopt);
  EXPECT_EQ(store_->try_load_rule(-1), std::nullopt);
}

TEST_P(RuleStoreContract, UpdateRewritesEveryFieldAndRaisesTheRevision) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  const Rule plain{.name = L"silver"};
  const StoredRule updated = store_->update_rule(added.number, plain);
  EXPECT_EQ(updated.number, added.number);
  EXPECT_EQ(updated.rule, plain);
  EXPECT_GT(updated.revision, added.revision);
  EXPECT_EQ(store_->load_rules(), std::vector{updated});
}

TEST_P(RuleStoreContract, UpdateMayKeepTheName) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  Rule changed = added.rule;
  changed.roll_offset = 5;
  EXPECT_EQ(store_->update_rule(added.number, changed).rule, changed);
}

TEST_P(RuleStoreContract, UpdateOfAnOtherRevisionIsRefused) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  const StoredRule theirs = store_->update_rule(added.number, sample_rule(L"theirs"), added.revision);
  EXPECT_EQ(refusal_kind([&] { store_->update_rule(added.number, sample_rule(L"mine"), added.revision); }),
            StoreErrorKind::changed);
  EXPECT_EQ(store_->load_rules(), std::vector{theirs});
}

TEST_P(RuleStoreContract, DeleteOfAnotherRevisionIsRefused) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  const StoredRule theirs = store_->update_rule(added.number, sample_rule(L"theirs"));
  EXPECT_EQ(refusal_kind([&] { store_->delete_rule(added.number, added.revision); }), StoreErrorKind::changed);
  EXPECT_EQ(store_->load_rules(), std::vector{theirs});
  store_->delete_rule(added.number, theirs.revision);
  EXPECT_TRUE(store_->load_rules().empty());
}

TEST_P(RuleStoreContract, UpdateOrDeleteOfAMissingRuleIsRefused) {
  EXPECT_EQ(refusal_kind([&] { store_->update_rule(7, sample_rule(L"gold")); }), StoreErrorKind::not_found);
  EXPECT_EQ(refusal_kind([&] { store_->delete_rule(7); }), StoreErrorKind::not_found);
  EXPECT_EQ(refusal([&] { store_->delete_rule(7); })->subject(), L"7");
}

TEST_P(RuleStoreContract, DeletedRuleIsGoneAndItsNumberStaysUnused) {
  const StoredRule kept = store_->add_rule(sample_rule(L"kept"));
  const StoredRule deleted = store_->add_rule(sample_rule(L"deleted"));
  store_->delete_rule(deleted.number);
  EXPECT_EQ(store_->load_rules(), std::vector{kept});
  EXPECT_GT(store_->add_rule(sample_rule(L"deleted")).number, deleted.number);
}

TEST_P(RuleStoreContract, DuplicateNameIsRefusedAndNamesItself) {
  store_->add_rule(sample_rule(L"gold"));
  const StoredRule silver = store_->add_rule(sample_rule(L"silver"));
  const StoreSnapshot before = snapshot_of(*store_);
  const auto added = refusal([&] { store_->add_rule(sample_rule(L"gold")); });
  const auto updated = refusal([&] { store_->update_rule(silver.number, sample_rule(L"gold")); });
  ASSERT_TRUE(added && updated);
  EXPECT_EQ(added->kind(), StoreErrorKind::duplicate_name);
  EXPECT_EQ(updated->kind(), StoreErrorKind::duplicate_name);
  EXPECT_EQ(added->subject(), L"gold");
  EXPECT_EQ(snapshot_of(*store_), before);
}

TEST_P(RuleStoreContract, NamesTravelUnchangedAndAreToldApartByTheirCodeUnits) {
  for (const std::wstring& name : awkward_names()) {
    const StoredRule added = store_->add_rule(sample_rule(name));
    EXPECT_EQ(store_->try_load_rule(added.number)->rule.name, name);
    EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(name)); }), StoreErrorKind::duplicate_name);
  }
  EXPECT_EQ(store_->load_rules().size(), awkward_names().size());
}

TEST_P(RuleStoreContract, EveryNumberKeepsToItsRange) {
  const StoredRule kept = store_->add_rule(sample_rule(L"kept"));
  for (const RuleColumn& column : rule_columns) {
    for (const long value : {column.least, column.greatest}) {
      Rule rule = kept.rule;
      rule.*column.value = value;
      EXPECT_EQ(store_->update_rule(kept.number, rule).rule.*column.value, value) << column.name;
    }
    const StoreSnapshot before = snapshot_of(*store_);
    for (const long value : {column.least - 1, column.greatest + 1, LONG_MIN, LONG_MAX}) {
      Rule rule = sample_rule(L"refused");
      rule.*column.value = value;
      const auto added = refusal([&] { store_->add_rule(rule); });
      const auto updated = refusal([&] { store_->update_rule(kept.number, rule); });
      ASSERT_TRUE(added && updated) << column.name << ' ' << value;
      EXPECT_EQ(added->kind(), StoreErrorKind::invalid_value);
      EXPECT_EQ(updated->kind(), StoreErrorKind::invalid_value);
      EXPECT_EQ(added->subject(), std::wstring(column.name, column.name + strlen(column.name)));
    }
    EXPECT_EQ(snapshot_of(*store_), before);
  }
}

TEST_P(RuleStoreContract, EmptyAndOverlongNamesAreRefused) {
  const std::wstring overlong(longest_name + 1, L'x');
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(L"")); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(overlong)); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings({{L"", L"rule"}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings({{overlong, L""}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings({{L"setting", overlong}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(snapshot_of(*store_), StoreSnapshot());
}

TEST_P(RuleStoreContract, SettingsFollowTheNewNameOfTheirRule) {
  store_->replace_content(sample_content());
  const StoredRule first = store_->load_rules().front();
  const std::vector<StoredSetting> before = store_->load_settings();
  store_->update_rule(first.number, sample_rule(L"renamed"));
  EXPECT_EQ(store_->load_settings(),
            (std::vector<StoredSetting>{{before[0].number, 2, {L"copper", L"renamed"}},
                                        before[1],
                                        {before[2].number, 2, sample_setting(L"zinc", L"renamed")}}));
  store_->update_rule(first.number, {.name = L"renamed"});
  EXPECT_EQ(store_->load_settings()[0].revision, 2) << "the name stayed";
}

TEST_P(RuleStoreContract, RuleInUseIsNotDeleted) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = snapshot_of(*store_);
  const auto refused = refusal([&] { store_->delete_rule(before.rules.front().number); });
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->kind(), StoreErrorKind::in_use);
  EXPECT_EQ(refused->subject(), L"first");
  EXPECT_EQ(snapshot_of(*store_), before);
  store_->replace_settings({});
  store_->delete_rule(before.rules.front().number);
  EXPECT_EQ(store_->load_rules().size(), 1u);
}

}  // namespace
