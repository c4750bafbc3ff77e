#pragma once

#include <gmock/gmock.h>

#include "ExpectedReports.h"
#include "Scenarios.h"
#include "ScratchRoot.h"

namespace faults_test {

/// Plays a scenario in a host and lets the plug-in go. Fails the test when something is held or torn afterwards.
ScenarioResult play(const Scenario& scenario, const module_test::Module& module, test_support::RecordingHost& host,
                    const Arm& arm);

/// Plays a scenario in which nothing fails, and fails the test when it does not end as it is meant. Answers the calls
/// that the host got from `arm` on.
Calls play_undisturbed(const Scenario& scenario, const module_test::Module& module);

/// The built module, to play one scenario with again and again.
class FaultsTest : public testing::TestWithParam<Scenario> {
 protected:
  /// The system's first windows and the module's first reports come before anything is compared.
  void SetUp() override {
    play_undisturbed(GetParam(), module_);
    ASSERT_FALSE(HasFailure()) << "when nothing fails";
  }
  /// Which reports each fault leads to is told by the tests of each call.
  void TearDown() override { test_support::take_reports(); }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  module_test::Module module_;
};

}  // namespace faults_test
