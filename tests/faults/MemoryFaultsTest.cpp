#include <cstdio>
#include <optional>

#include "DocumentedNumbers.h"
#include "FailingMemory.h"
#include "FaultsTest.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::Memory;
using test_support::RecordingHost;
using testing::AnyOf;

/// Plays the scenario without one allocation, or without it and all that follow. Answers whether the module came to it.
bool play_without(long number, Memory kind, FaultDuration lack, const Scenario& scenario,
                  const module_test::Module& module) {
  RecordingHost host;
  std::optional<FailingMemory> memory;
  const ScenarioResult played =
      play(scenario, module, host, [&] { memory.emplace(module.handle(), number, kind, lack); });
  const bool failed = memory->has_failed();
  memory.reset();
  EXPECT_THAT(played.answer, AnyOf(S_OK, failed ? scenario.without_memory : S_OK));
  const std::vector<std::string> reports = test_support::take_reports();
  EXPECT_TRUE(played.answer != E_OUTOFMEMORY || reports.empty()) << reports.front();
  return failed;
}

class MemoryFaults : public FaultsTest {
 protected:
  long fail_each(Memory kind, FaultDuration lack) {
    for (long number = 1;; ++number) {
      const bool failed = play_without(number, kind, lack, GetParam(), module_);
      if (HasFailure()) ADD_FAILURE() << "when allocation " << number << " fails";
      if (HasFailure() || !failed) return number - 1;
    }
  }
};

TEST_P(MemoryFaults, LeadToTheDocumentedResultAndTearNothing) {
  const long blocks = fail_each(Memory::blocks, FaultDuration::once);
  const long strings = HasFailure() ? 0 : fail_each(Memory::com, FaultDuration::once);
  if (HasFailure()) return;
  std::printf("[ faults ] %s: operator new: %ld\n", GetParam().name, blocks);
  std::printf("[ faults ] %s: COM strings and task memory: %ld\n", GetParam().name, strings);
  EXPECT_EQ(documented_number("How many", GetParam().name, 2), static_cast<std::size_t>(blocks));
  EXPECT_EQ(documented_number("How many", GetParam().name, 3), static_cast<std::size_t>(strings));
}

TEST_P(MemoryFaults, ThatLastLeadToTheDocumentedResultAndTearNothing) {
  const long places = fail_each(Memory::any, FaultDuration::lasting);
  if (HasFailure()) return;
  std::printf("[ faults ] %s: no memory from a place on: %ld\n", GetParam().name, places);
  EXPECT_EQ(documented_number("How many", GetParam().name, 4), static_cast<std::size_t>(places));
}

INSTANTIATE_TEST_SUITE_P(Of, MemoryFaults, testing::ValuesIn(every_scenario()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
