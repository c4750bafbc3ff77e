#include <array>
#include <map>
#include <memory>
#include <thread>

#include "Depth.h"
#include "RandomCases.h"
#include "ServerTest.h"
#include "StoreWriter.h"

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

/// Five rules without an offset.
StoreContent five_rules() {
  StoreContent content;
  for (int i = 1; i <= 5; ++i) content.rules.push_back({.name = L"rule " + std::to_wstring(i)});
  return content;
}

TEST_F(ManyWorkbenches, ResultIsWhatTheyWereAcknowledged) {
  const auto store = schema_->open({.first_content = five_rules()});
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

/// A workbench in a process of its own, and what it has said.
struct Process {
  explicit Process(const std::wstring& arguments) : writer(arguments, L"desk_writer.exe") {}

  /// Reads what the workbench says to its end.
  void listen() {
    while (const auto progress = writer.next_progress()) {
      begun = progress->acknowledged ? 0 : static_cast<long>(progress->number);
      if (progress->acknowledged) ++acknowledged[static_cast<long>(progress->number)];
    }
  }

  StoreWriter writer;
  Acknowledged acknowledged;
  long begun = 0;  ///< the rule of a change that is not acknowledged
  bool killed = false;
  std::jthread listener{[this] { listen(); }};
};

TEST_F(ManyWorkbenches, NothingAcknowledgedIsLostWhileOneIsKilledEverySecond) {
  const auto store = schema_->open({.first_content = five_rules()});
  test_support::RandomCases random;
  const int changes = test_support::repetitions(200, 20);
  std::vector<std::unique_ptr<Process>> processes;
  for (int i = 0; i < 20; ++i)
    processes.push_back(std::make_unique<Process>(schema_->name() + L' ' + std::to_wstring(random.bits() % 1'000'000) +
                                                  L' ' + std::to_wstring(changes)));
  int killed = 0;
  for (const auto& process : processes) {
    if (killed == 10 || process->writer.ends_within(0)) continue;
    process->writer.kill();
    process->killed = true;
    ++killed;
    Sleep(1000);
  }
  Acknowledged sum;
  Acknowledged unknown;
  for (const auto& process : processes) {
    EXPECT_EQ(process->writer.exit_code(), process->killed ? StoreWriter::killed : 0u);
    process->listener.join();
    for (const auto& [number, count] : process->acknowledged) sum[number] += count;
    if (process->begun != 0) ++unknown[process->begun];
  }
  EXPECT_GE(killed, 1);
  for (const StoredRule& stored : store->load_rules()) {
    const auto number = stored.number;
    EXPECT_GE(stored.revision, 1 + sum[number]) << "an acknowledged change of rule " << number << " is lost";
    EXPECT_LE(stored.revision, 1 + sum[number] + unknown[number]);
    EXPECT_EQ(stored.rule.roll_offset, (stored.revision - 1) % 100) << "a change overwrote another";
    EXPECT_EQ(store->load_changes(number).size(), static_cast<std::size_t>(stored.revision));
  }
}

}  // namespace
