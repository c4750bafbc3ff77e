#include "StoreContract.h"

using namespace workbench;

namespace {

/// What every store does with many records at once, and whom it notifies.
class ContentStoreContract : public StoreContract {};

INSTANTIATE_TEST_SUITE_P(Stores, ContentStoreContract, every_store(), store_name);

TEST_P(ContentStoreContract, ImportChangesRulesByTheirNamesAddsOthersAndLeavesTheRest) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = snapshot_of(*store_);
  const Rule second{.name = L"second", .roll_offset = 3};
  store_->import_records({{sample_rule(L"first"), sample_rule(L"third"), second}});
  EXPECT_EQ(store_->load_rules(),
            (std::vector<StoredRule>{before.rules[0],
                                     {before.rules[1].number, before.rules[1].revision + 1, second},
                                     {before.rules[1].number + 1, 1, sample_rule(L"third")}}));
  EXPECT_EQ(store_->load_settings(), before.settings);
  store_->import_records({{}, std::vector{sample_setting(L"lead", L"third")}});
  EXPECT_EQ(settings_of(*store_), std::vector{sample_setting(L"lead", L"third")});
  EXPECT_GT(store_->load_settings()[0].number, before.settings.back().number);
}

TEST_P(ContentStoreContract, ImportThatIsRefusedOrCancelledChangesNothing) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = snapshot_of(*store_);
  const std::vector<Rule> rules{{.name = L"first"}, {.name = L"third"}};
  EXPECT_EQ(refusal_kind([&] { store_->import_records({{rules[0], rules[1], {}}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] {
              store_->import_records({rules, std::vector<SymbolSourceSetting>(1)});
            }),
            StoreErrorKind::invalid_value);
  // Two rules and two settings.
  const StoreImport records{rules, std::vector(2, sample_setting(L"lead", L"third"))};
  for (int last = 1; last <= 4; ++last) {
    int left = last;
    EXPECT_THROW(store_->import_records(records, [&](std::size_t, std::size_t) { return --left > 0; }),
                 schedule::Cancelled)
        << last;
  }
  EXPECT_EQ(snapshot_of(*store_), before);
}

TEST_P(ContentStoreContract, ImportSaysHowFarItHasCome) {
  const StoreImport records{{{.name = L"first"}, {.name = L"third"}}, std::vector(2, sample_setting(L"lead", L""))};
  std::vector<double> shares;
  store_->import_records(records, [&](std::size_t done, std::size_t all) {
    shares.push_back(static_cast<double>(done) / static_cast<double>(all));
    return true;
  });
  EXPECT_EQ(shares, (std::vector{0.0, 0.25, 0.5, 0.75}));
}

TEST_P(ContentStoreContract, ReplacedContentTakesNewNumbers) {
  const long old = store_->add_rule(sample_rule(L"old")).number;
  store_->replace_content(sample_content());
  const StoreSnapshot now = snapshot_of(*store_);
  ASSERT_EQ(now.rules.size(), 2u);
  EXPECT_EQ(now.rules[0].rule, sample_content().rules[0]);
  EXPECT_EQ(now.rules[1].rule, sample_content().rules[1]);
  EXPECT_GT(now.rules[0].number, old);
  EXPECT_EQ(settings_of(*store_), sample_content().settings);
  EXPECT_EQ(now.calendars, sample_content().calendars);
}

TEST_P(ContentStoreContract, ContentIsReplacedWhollyOrNotAtAll) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = snapshot_of(*store_);
  StoreContent twice = sample_content();
  twice.rules.push_back(twice.rules.front());
  EXPECT_EQ(refusal_kind([&] { store_->replace_content(twice); }), StoreErrorKind::duplicate_name);
  StoreContent without_days = sample_content();
  without_days.calendars[0].calendar.to = {};
  EXPECT_EQ(refusal_kind([&] { store_->replace_content(without_days); }), StoreErrorKind::invalid_value);
  StoreContent nameless = sample_content();
  nameless.settings.push_back({});
  EXPECT_EQ(refusal_kind([&] { store_->replace_content(nameless); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings(nameless.settings); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(snapshot_of(*store_), before);
}

TEST_P(ContentStoreContract, CopyHoldsEverythingWithItsNumbers) {
  EXPECT_EQ(copy_without_changes(*store_), StoreCopy());
  store_->replace_content(sample_content());
  store_->update_rule(1, sample_rule(L"renamed"));
  store_->delete_rule(store_->add_rule(sample_rule(L"third")).number);
  store_->delete_setting(store_->add_setting(sample_setting(L"last", L"")).number);
  const StoreSnapshot now = snapshot_of(*store_);
  EXPECT_EQ(copy_without_changes(*store_), (StoreCopy{now.rules, now.settings, now.calendars, 3, 4}));
}

TEST_P(ContentStoreContract, SubscribersHearOfEachChangeOnceAndOfNoRefusal) {
  int notified = 0;
  const StoreSubscription subscription = store_->subscribe([&] { ++notified; });
  const long number = store_->add_rule(sample_rule(L"gold")).number;
  EXPECT_EQ(notified, 1);
  store_->update_rule(number, sample_rule(L"silver"));
  EXPECT_EQ(notified, 2);
  store_->replace_settings({{L"setting", L"silver"}});
  EXPECT_EQ(notified, 3);
  EXPECT_TRUE(refusal([&] { store_->delete_rule(number); }));
  EXPECT_TRUE(refusal([&] { store_->add_rule(sample_rule(L"silver")); }));
  EXPECT_EQ(notified, 3);
  const StoredSetting setting = store_->add_setting(sample_setting(L"other", L"silver"));
  EXPECT_EQ(notified, 4);
  store_->update_setting(setting.number, setting.setting);
  EXPECT_EQ(notified, 5);
  EXPECT_TRUE(refusal([&] { store_->delete_setting(setting.number, 1); }));
  EXPECT_EQ(notified, 5);
  store_->delete_setting(setting.number);
  EXPECT_EQ(notified, 6);
  store_->replace_calendars({sample_calendar("exchange")});
  EXPECT_EQ(notified, 7);
  store_->replace_content({});
  EXPECT_EQ(notified, 8);
  EXPECT_FALSE(store_->poll_for_changes());
  EXPECT_EQ(notified, 8);
}

TEST_P(ContentStoreContract, SubscriberSeesTheChangeAndMayLeaveOrThrow) {
  std::vector<std::size_t> seen;
  StoreSubscription leaving;
  leaving = store_->subscribe([&] { leaving.reset(); });
  const StoreSubscription throwing = store_->subscribe([] { throw 1; });
  const StoreSubscription counting = store_->subscribe([&] { seen.push_back(store_->load_rules().size()); });
  store_->add_rule(sample_rule(L"one"));
  store_->add_rule(sample_rule(L"two"));
  EXPECT_FALSE(leaving);
  EXPECT_EQ(seen, (std::vector<std::size_t>{1, 2}));
}

TEST_P(ContentStoreContract, DroppedSubscriptionHearsNothing) {
  int notified = 0;
  store_->subscribe([&] { ++notified; }).reset();
  store_->add_rule(sample_rule(L"gold"));
  EXPECT_EQ(notified, 0);
}

}  // namespace
