#include <cstdio>
#include <optional>

#include "Depth.h"
#include "FailingMemory.h"
#include "FaultsTest.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::Memory;
using test_support::RecordingHost;
using testing::AnyOf;

class MemoryFaults : public FaultsTest {
 protected:
  /// Plays the scenario without each allocation in turn, or without it and all that follow.
  void fail_each_allocation(FaultDuration duration) {
    const Scenario& scenario = GetParam();
    const std::size_t injected = test_support::fail_each_call([&](std::size_t number) -> std::optional<std::string> {
      RecordingHost host;
      std::optional<FailingMemory> memory;
      const ScenarioResult played =
          play(scenario, module_, host, [&] { memory.emplace(module_.handle(), number, Memory::any, duration); });
      const bool failed = memory->has_failed();
      memory.reset();
      EXPECT_THAT(played.answer, AnyOf(S_OK, failed ? scenario.without_memory : S_OK));
      const std::vector<std::string> reports = test_support::take_reports();
      EXPECT_TRUE(played.answer != E_OUTOFMEMORY || reports.empty()) << reports.front();
      return failed ? std::optional<std::string>("an allocation") : std::nullopt;
    });
    EXPECT_GT(injected, 0u);
    std::printf("[ faults ] %s: allocations%s: %zu\n", scenario.name,
                duration == FaultDuration::lasting ? ", from then on" : "", injected);
  }
};

TEST_P(MemoryFaults, LeadToTheDocumentedResultAndTearNothing) { fail_each_allocation(FaultDuration::once); }

TEST_P(MemoryFaults, ThatLastLeadToTheDocumentedResultAndTearNothing) {
  if (test_support::deep()) fail_each_allocation(FaultDuration::lasting);
}

INSTANTIATE_TEST_SUITE_P(Of, MemoryFaults, testing::ValuesIn(every_scenario()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
