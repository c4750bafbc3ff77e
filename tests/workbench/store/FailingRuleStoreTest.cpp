#include <gtest/gtest.h>

#include "FailingRuleStore.h"
#include "MemoryRuleStore.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

void use_every_call(RuleStore& store) {
  store.replace_content(sample_content());
  const long number = store.add_rule(sample_rule(L"third")).number;
  store.update_rule(number, sample_rule(L"fourth"));
  store.try_load_rule(number);
  store.load_rules();
  store.load_changes(number);
  store.load_settings();
  store.delete_rule(number);
  const long setting = store.add_setting(sample_setting(L"new", L"")).number;
  store.update_setting(setting, sample_setting(L"old", L""));
  store.delete_setting(setting);
  store.replace_calendars({sample_calendar("other")});
  store.load_calendars();
  store.import_records({{sample_rule(L"imported")}});
  store.replace_settings({});
  store.poll_for_changes();
}

TEST(FailingRuleStore, ExactlyTheNthCallFailsAndChangesNothing) {
  for (int failing = 1; failing <= 16; ++failing) {
    auto inner = std::make_shared<MemoryRuleStore>();
    FailingRuleStore store(inner, failing, StoreErrorKind::full);
    EXPECT_EQ(refusal_kind([&] { use_every_call(store); }), StoreErrorKind::full) << failing;
    EXPECT_EQ(store.calls(), failing);
    const StoreSnapshot before = snapshot_of(*inner);
    EXPECT_EQ(snapshot_of(store), before);
  }
  FailingRuleStore unharmed(std::make_shared<MemoryRuleStore>(), 17);
  EXPECT_EQ(refusal_kind([&] { use_every_call(unharmed); }), std::nullopt);
  EXPECT_EQ(unharmed.calls(), 16);
}

TEST(FailingRuleStore, ChangesOfTheInnerStoreAreTold) {
  auto inner = std::make_shared<MemoryRuleStore>();
  FailingRuleStore store(inner, 0);
  int notified = 0;
  const StoreSubscription subscription = store.subscribe([&] { ++notified; });
  inner->add_rule(sample_rule(L"gold"));
  EXPECT_EQ(notified, 1);
}

}  // namespace
