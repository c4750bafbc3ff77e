#include <optional>

#include "FailingMemory.h"
#include "FaultsTest.h"
#include "RuntimeKind.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::RecordingHost;
using testing::AnyOf;

class MemoryFaults : public test_support::NeedsReplacedRuntime<FaultsTest> {
 protected:
  /// Plays the scenario without one allocation, or without it and all that follow. Returns what failed.
  std::optional<std::string> play_without(std::size_t number, FaultDuration duration) {
    const Scenario& scenario = GetParam();
    RecordingHost host;
    std::optional<FailingMemory> memory;
    const ScenarioResult result = play(scenario, module_, host, [&] {
      memory.emplace(module_.handle(), number, test_support::Memory::any, duration);
    });
    const bool failed = memory->has_failed();
    memory.reset();
    EXPECT_THAT(result.hresult, AnyOf(S_OK, failed ? scenario.without_memory : S_OK));
    const std::vector<std::string> reports = test_support::take_reports();
    EXPECT_TRUE(result.hresult != E_OUTOFMEMORY || reports.empty()) << reports.front();
    return failed ? std::optional<std::string>("an allocation") : std::nullopt;
  }
};

TEST_P(MemoryFaults, LeadToTheDocumentedResultAndTearNothing) {
  const auto play = [&](std::size_t number, FaultDuration duration) { return play_without(number, duration); };
  EXPECT_GT(fail_each_call_of(GetParam().name, "allocations", play), 0u);
}

INSTANTIATE_TEST_SUITE_P(Of, MemoryFaults, testing::ValuesIn(without_memory(every_scenario(), {"Add", "Show"})),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
