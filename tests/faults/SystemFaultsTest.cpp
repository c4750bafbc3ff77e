#include <cstdio>
#include <optional>

#include "Depth.h"
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

  /// A newly loaded module, so that what it looks up once is looked up in each run. Returns the call that failed.
  static std::optional<std::string> play_without(std::size_t number, FaultDuration duration) {
    const module_test::Module module;
    FailingSystem system(module.handle());
    GetParam().play(module, {[&] { system.arm(number, duration); }, [&] { system.clear_faults(); },
                             [&] { return system.failed(); }});
    system.clear_faults();
    // Which reports each fault leads to is told by the tests of each call.
    test_support::take_reports();
    if (system.failed().empty()) return std::nullopt;
    return system.calls()[number - 1] + (duration == FaultDuration::lasting ? ", and all after it" : "");
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
};

TEST_P(SystemFaults, LeadToTheDocumentedResultAndTearNothing) {
  for (const FaultDuration duration : {FaultDuration::once, FaultDuration::lasting}) {
    const std::size_t injected =
        test_support::fail_each_call([&](std::size_t number) { return play_without(number, duration); });
    std::printf("[ faults ] %s: calls of the system%s: %zu\n", GetParam().name.c_str(),
                duration == FaultDuration::lasting ? ", from then on" : "", injected);
    if (HasFailure() || !test_support::deep()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, SystemFaults, testing::ValuesIn(every_system_scenario()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
