#include <optional>

#include "FailingSystem.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingSystem;
using test_support::FaultDuration;

class SystemFaults : public testing::TestWithParam<SystemScenario> {
 protected:
  /// A newly loaded module, so that what it looks up once is looked up in each run. Returns the call that failed.
  static std::optional<std::string> play_without(std::size_t number, FaultDuration duration) {
    const module_test::Module module;
    FailingSystem system(module.handle());
    GetParam().play(module, {[&] { system.arm(number, duration); }, [&] { system.clear_faults(); },
                             [&] { return system.failed(); }});
    system.clear_faults();
    // The tests of each call say which reports each fault leads to.
    test_support::take_reports();
    if (system.failed().empty()) return std::nullopt;
    return system.calls()[number - 1] + (duration == FaultDuration::lasting ? ", and all after it" : "");
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
};

TEST_P(SystemFaults, LeadToTheDocumentedResultAndTearNothing) {
  fail_each_call_of(GetParam().name, "calls of the system", play_without);
}

INSTANTIATE_TEST_SUITE_P(Of, SystemFaults, testing::ValuesIn(every_system_scenario()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
