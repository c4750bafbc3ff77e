#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Depth.h"
#include "ExpectedReports.h"
#include "FaultLoop.h"
#include "Scenarios.h"
#include "ScratchRoot.h"

namespace faults_test {

/// Plays a scenario in a host and releases the plug-in. Fails the test when the module still holds anything or the
/// storage holds part of a change.
ScenarioResult play(const Scenario& scenario, const module_test::Module& module, test_support::RecordingHost& host,
                    const Arm& arm);

/// Plays a scenario without faults, and fails the test when it does not end as intended. Returns the calls that the
/// host got from `arm` on.
Calls play_undisturbed(const Scenario& scenario, const module_test::Module& module);

/// Plays something again and again, each time with another call failing, and in a deep run also with each call and all
/// that follow, after a run in which nothing fails. `play` returns the call that failed, number 0 fails none. Prints
/// how many calls of this `kind` failed; returns the number for single calls.
std::size_t fail_each_call_of(
    const std::string& scenario, const char* kind,
    const std::function<std::optional<std::string>(std::size_t number, test_support::FaultDuration duration)>& play);

/// Those of the scenarios whose allocations fail one after the other: all in a deep run, otherwise those of these
/// names.
template <class AnyScenario>
std::vector<AnyScenario> without_memory(std::vector<AnyScenario> scenarios, const std::set<std::string>& quick) {
  if (!test_support::deep())
    std::erase_if(scenarios, [&](const AnyScenario& scenario) { return !quick.contains(scenario.name); });
  return scenarios;
}

/// The built module, to play one scenario with again and again.
class FaultsTest : public testing::TestWithParam<Scenario> {
 protected:
  /// The system's first windows and the module's first reports come before anything is compared.
  void SetUp() override {
    play_undisturbed(GetParam(), module_);
    ASSERT_FALSE(HasFailure()) << "when nothing fails";
  }
  /// The tests of each call say which reports each fault leads to.
  void TearDown() override { test_support::take_reports(); }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  module_test::Module module_;
};

}  // namespace faults_test
