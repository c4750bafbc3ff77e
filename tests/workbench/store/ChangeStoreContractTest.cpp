#include "StoreContract.h"

using namespace workbench;

namespace {

/// Old and new rule of each change.
using Steps = std::vector<std::pair<std::optional<Rule>, std::optional<Rule>>>;

constexpr std::nullopt_t none = std::nullopt;

/// What every store records of the changes of rules.
class ChangeStoreContract : public StoreContract {
 protected:
  Steps steps(long number) const {
    Steps steps;
    for (const RuleChange& change : store_->load_changes(number)) steps.emplace_back(change.old_rule, change.new_rule);
    return steps;
  }
};

INSTANTIATE_TEST_SUITE_P(Stores, ChangeStoreContract, every_store(), store_name);

TEST_P(ChangeStoreContract, RuleKeepsItsChangesFromItsFirstToItsDeletion) {
  const long number = store_->add_rule(sample_rule(L"gold")).number;
  const long other = store_->add_rule(sample_rule(L"other")).number;
  store_->update_rule(number, {.name = L"silver"});
  EXPECT_EQ(steps(number), (Steps{{none, sample_rule(L"gold")}, {sample_rule(L"gold"), Rule{.name = L"silver"}}}));
  store_->delete_rule(number);
  EXPECT_EQ(steps(number).back(), (Steps::value_type{Rule{.name = L"silver"}, none}));
  EXPECT_EQ(steps(number).size(), 3u);
  EXPECT_EQ(steps(other), (Steps{{none, sample_rule(L"other")}}));
  EXPECT_TRUE(store_->load_changes(other + 1).empty());
}

TEST_P(ChangeStoreContract, ChangeSaysWhoMadeItAndWhenInUtc) {
  const auto to_the_second = [](const std::wstring& time) { return time.substr(0, 19); };
  const std::wstring before = present_time();
  const long number = store_->add_rule(sample_rule(L"gold")).number;
  store_->update_rule(number, sample_rule(L"silver"));
  const std::wstring after = present_time();
  const std::vector<RuleChange> changes = store_->load_changes(number);
  ASSERT_EQ(changes.size(), 2u);
  for (const RuleChange& change : changes) {
    EXPECT_FALSE(change.user.empty());
    EXPECT_EQ(change.user, changes.front().user);
    EXPECT_EQ(change.time.size(), before.size());
    EXPECT_GE(to_the_second(change.time), to_the_second(before));
    EXPECT_LE(to_the_second(change.time), to_the_second(after));
    EXPECT_EQ(change.time.back(), L'Z');
  }
  EXPECT_LE(changes[0].time, changes[1].time);
}

TEST_P(ChangeStoreContract, RefusedChangeIsNotRecorded) {
  const StoredRule stored = store_->add_rule(sample_rule(L"gold"));
  store_->add_rule(sample_rule(L"silver"));
  store_->add_setting({L"copper", L"gold"});
  EXPECT_TRUE(refusal([&] { store_->update_rule(stored.number, sample_rule(L"silver")); }));
  EXPECT_TRUE(refusal([&] { store_->update_rule(stored.number, {.name = L"x", .roll_offset = -1}); }));
  EXPECT_TRUE(refusal([&] { store_->update_rule(stored.number, sample_rule(L"new"), stored.revision + 1); }));
  EXPECT_TRUE(refusal([&] { store_->delete_rule(stored.number); }));
  const auto cancel = [](std::size_t, std::size_t) { return false; };
  EXPECT_THROW(store_->import_records({{{.name = L"gold"}}}, cancel), schedule::Cancelled);
  EXPECT_EQ(steps(stored.number).size(), 1u);
}

TEST_P(ChangeStoreContract, ImportIsRecordedForTheRulesThatItChanges) {
  const long changed = store_->add_rule(sample_rule(L"changed")).number;
  const long same = store_->add_rule(sample_rule(L"same")).number;
  store_->import_records({{{.name = L"changed"}, sample_rule(L"same"), sample_rule(L"added")}});
  EXPECT_EQ(steps(changed).back(), (Steps::value_type{sample_rule(L"changed"), Rule{.name = L"changed"}}));
  EXPECT_EQ(steps(same).size(), 1u);
  EXPECT_EQ(steps(store_->load_rules().back().number), (Steps{{none, sample_rule(L"added")}}));
}

TEST_P(ChangeStoreContract, ReplacedContentIsRecordedAsDeletedAndAdded) {
  const long old = store_->add_rule(sample_rule(L"old")).number;
  store_->replace_content(sample_content());
  EXPECT_EQ(steps(old).back(), (Steps::value_type{sample_rule(L"old"), none}));
  for (const StoredRule& stored : store_->load_rules()) EXPECT_EQ(steps(stored.number), (Steps{{none, stored.rule}}));
}

TEST_P(ChangeStoreContract, NamesAreRecordedUnchanged) {
  const long number = store_->add_rule({.name = L"first"}).number;
  std::wstring old = L"first";
  for (const std::wstring& name : awkward_names()) {
    store_->update_rule(number, {.name = name});
    EXPECT_EQ(steps(number).back(), (Steps::value_type{Rule{.name = old}, Rule{.name = name}}));
    old = name;
  }
}

}  // namespace
