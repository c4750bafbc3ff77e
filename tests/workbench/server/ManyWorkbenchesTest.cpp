#include <map>
#include <thread>

#include "Depth.h"
#include "RandomCases.h"
#include "ServerTest.h"

using namespace workbench;

namespace {

class ManyWorkbenches : public ServerTest {};

/// What one workbench was acknowledged: for each rule, by how much it raised the offset in all.
using Acknowledged = std::map<long, long>;

/// Raises the offset of random rules by one, and tries again what a conflict refused.
Acknowledged raise_offsets(RuleStore& store, unsigned seed, int changes) {
  Acknowledged acknowledged;
  std::mt19937 random(seed);
  while (changes > 0) {
    const long number = static_cast<long>(random() % 5 + 1);
    StoredRule read = store.try_load_rule(number).value();
    read.rule.roll_offset = (read.rule.roll_offset + 1) % 100;
    try {
      store.update_rule(number, read.rule, read.revision);
      ++acknowledged[number];
      --changes;
    } catch (const StoreError& error) {
      if (error.kind() != StoreErrorKind::changed) throw;
    }
  }
  return acknowledged;
}

TEST_F(ManyWorkbenches, ResultIsWhatTheyWereAcknowledged) {
  StoreContent content;
  for (int i = 1; i <= 5; ++i) content.rules.push_back({.name = L"rule " + std::to_wstring(i)});
  const auto store = schema_->open({.first_content = content});
  test_support::RandomCases random;
  constexpr int workbenches = 20;
  const int changes = test_support::repetitions(200, 20);
  std::vector<Acknowledged> acknowledged(workbenches);
  std::vector<std::jthread> threads;
  for (Acknowledged& own : acknowledged)
    threads.emplace_back([&, seed = static_cast<unsigned>(random.bits())] {
      try {
        own = raise_offsets(*schema_->open(), seed, changes);
      } catch (const StoreError& error) {
        ADD_FAILURE() << "a workbench met " << error.what();
      }
    });
  threads.clear();
  Acknowledged sum;
  for (const Acknowledged& own : acknowledged)
    for (const auto& [number, count] : own) sum[number] += count;
  for (const StoredRule& stored : store->load_rules()) {
    EXPECT_EQ(stored.revision, 1 + sum[stored.number]);
    EXPECT_EQ(stored.rule.roll_offset, sum[stored.number] % 100);
  }
  EXPECT_TRUE(store->poll_for_changes());
}

}  // namespace
