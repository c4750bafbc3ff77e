#include <cstdio>
#include <optional>

#include "DocumentedNumbers.h"
#include "FailingMemory.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::Memory;

class FirstUseMemory : public testing::TestWithParam<SystemScenario> {
 protected:
  void SetUp() override {
    play_without(0, FaultDuration::once);
    ASSERT_FALSE(HasFailure()) << "when nothing fails";
  }

  /// A newly loaded module without one allocation, or without it and all that follow. Answers whether it came to it.
  static bool play_without(long number, FaultDuration lack) {
    const module_test::Module module;
    std::optional<FailingMemory> memory;
    GetParam().play(module, {[&] { memory.emplace(module.handle(), number, Memory::any, lack); },
                             [&] { memory->clear_faults(); }, [] { return std::set<std::string>(); }});
    test_support::take_reports();
    return memory->has_failed();
  }

  static std::size_t fail_each(FaultDuration lack) {
    for (long number = 1;; ++number) {
      const bool failed = play_without(number, lack);
      if (HasFailure()) ADD_FAILURE() << "when allocation " << number << " fails";
      if (HasFailure() || !failed) return static_cast<std::size_t>(number - 1);
    }
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
};

TEST_P(FirstUseMemory, LeadsToTheDocumentedResultAndTearsNothing) {
  const std::size_t once = fail_each(FaultDuration::once);
  const std::size_t lasting = HasFailure() ? 0 : fail_each(FaultDuration::lasting);
  if (HasFailure()) return;
  std::printf("[ faults ] %s: allocations: %zu, and no memory from there on: %zu\n", GetParam().name.c_str(), once,
              lasting);
  EXPECT_EQ(documented_number("Memory at first use", GetParam().name, 0), once);
  EXPECT_EQ(documented_number("Memory at first use", GetParam().name, 1), lasting);
}

INSTANTIATE_TEST_SUITE_P(Of, FirstUseMemory, testing::ValuesIn(every_first_use()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
