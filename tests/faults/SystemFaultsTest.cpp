#include <cstdio>

#include "DocumentedNumbers.h"
#include "FailingSystem.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingSystem;
using test_support::FaultDuration;

class SystemFaults : public testing::TestWithParam<SystemScenario> {
 protected:
  void SetUp() override {
    play_without(0, FaultDuration::once);
    ASSERT_FALSE(HasFailure()) << "when nothing fails";
  }

  /// A newly loaded module, so that what it looks up once is looked up in each run. Answers whether a call failed.
  static bool play_without(std::size_t number, FaultDuration lack) {
    const module_test::Module module;
    FailingSystem system(module.handle());
    GetParam().play(
        module, {[&] { system.arm(number, lack); }, [&] { system.clear_faults(); }, [&] { return system.failed(); }});
    system.clear_faults();
    // Which reports each fault leads to is told by the tests of each call.
    test_support::take_reports();
    const bool failed = !system.failed().empty();
    if (HasFailure() && failed) {
      ADD_FAILURE() << "when call " << number << " fails: " << system.calls()[number - 1]
                    << (lack == FaultDuration::lasting ? ", and all after it" : "");
    }
    return failed;
  }

  static std::size_t fail_each_call(FaultDuration lack) {
    for (std::size_t number = 1;; ++number) {
      if (!play_without(number, lack) || HasFailure()) return number - 1;
    }
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
};

TEST_P(SystemFaults, LeadToTheDocumentedResultAndTearNothing) {
  const std::size_t once = fail_each_call(FaultDuration::once);
  if (HasFailure()) return;
  std::printf("[ faults ] %s: call of the system: %zu\n", GetParam().name.c_str(), once);
  const std::size_t lasting = fail_each_call(FaultDuration::lasting);
  if (HasFailure()) return;
  std::printf("[ faults ] %s: call of the system, from then on: %zu\n", GetParam().name.c_str(), lasting);
  EXPECT_EQ(documented_number("System faults", GetParam().name, 0), once);
  EXPECT_EQ(documented_number("System faults", GetParam().name, 1), once + lasting);
}

INSTANTIATE_TEST_SUITE_P(Of, SystemFaults, testing::ValuesIn(every_system_scenario()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
