#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "FailingRuleStore.h"
#include "FaultLoop.h"
#include "MemoryRuleStore.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

/// Uses each function of a store. Each function calls the store once.
std::vector<std::function<void(RuleStore&)>> every_call() {
  const auto number = std::make_shared<long>(0);
  return {
      [](RuleStore& store) { store.replace_content(sample_content()); },
      [=](RuleStore& store) { *number = store.add_rule(sample_rule(L"third")).number; },
      [=](RuleStore& store) { store.update_rule(*number, sample_rule(L"fourth")); },
      [=](RuleStore& store) { store.try_load_rule(*number); },
      [](RuleStore& store) { store.load_rules(); },
      [=](RuleStore& store) { store.load_changes(*number); },
      [](RuleStore& store) { store.load_settings(); },
      [=](RuleStore& store) { store.delete_rule(*number); },
      [=](RuleStore& store) { *number = store.add_setting(sample_setting(L"new", L"")).number; },
      [=](RuleStore& store) { store.update_setting(*number, sample_setting(L"old", L"")); },
      [=](RuleStore& store) { store.delete_setting(*number); },
      [](RuleStore& store) { store.replace_calendars({sample_calendar("other")}); },
      [](RuleStore& store) { store.load_calendars(); },
      [](RuleStore& store) { store.import_records({{sample_rule(L"imported")}}); },
      [](RuleStore& store) { store.replace_settings({}); },
      [](RuleStore& store) { store.poll_for_changes(); },
  };
}

TEST(FailingRuleStore, ExactlyTheNthCallFailsAndChangesNothing) {
  const auto every = every_call();
  const std::size_t failed = test_support::fail_each_call([&](std::size_t number) -> std::optional<std::string> {
    auto inner = std::make_shared<MemoryRuleStore>();
    FailingRuleStore store(inner, static_cast<int>(number), StoreErrorKind::full);
    const auto refusal = refusal_kind([&] {
      for (const auto& call : every) call(store);
    });
    if (!refusal) {
      EXPECT_EQ(store.calls(), static_cast<int>(every.size()));
      return std::nullopt;
    }
    EXPECT_EQ(refusal, StoreErrorKind::full);
    EXPECT_EQ(store.calls(), static_cast<int>(number));
    const StoreSnapshot before = snapshot_of(*inner);
    EXPECT_EQ(snapshot_of(store), before);
    return "a call of the store";
  });
  EXPECT_EQ(failed, every.size());
}

TEST(FailingRuleStore, SubscribersHearOfChangesOfTheInnerStore) {
  auto inner = std::make_shared<MemoryRuleStore>();
  FailingRuleStore store(inner, 0);
  int notified = 0;
  const StoreSubscription subscription = store.subscribe([&] { ++notified; });
  inner->add_rule(sample_rule(L"gold"));
  EXPECT_EQ(notified, 1);
}

}  // namespace
