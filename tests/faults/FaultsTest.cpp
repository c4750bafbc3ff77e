#include "FaultsTest.h"

#include <cstdio>

#include "Depth.h"

namespace faults_test {

using test_support::FaultDuration;
using test_support::RecordingHost;

ScenarioResult play(const Scenario& scenario, const module_test::Module& module, RecordingHost& host, const Arm& arm) {
  host.rules() = stored_rules();
  host.settings() = stored_settings();
  Session session(module, host, arm);
  const ScenarioResult result = scenario.play(session);
  session.end();
  EXPECT_THAT(host.rules(), testing::AnyOfArray(scenario.outcomes));
  return result;
}

Calls play_undisturbed(const Scenario& scenario, const module_test::Module& module) {
  RecordingHost host;
  const ScenarioResult result = play(scenario, module, host, [&] {
    host.record_queries(true);
    host.calls().forget();
  });
  EXPECT_EQ(S_OK, result.hresult) << scenario.name;
  EXPECT_TRUE(result.as_intended) << scenario.name;
  EXPECT_EQ(scenario.outcomes.front(), host.rules()) << scenario.name;
  return host.calls().all();
}

std::size_t fail_each_call_of(
    const std::string& scenario, const char* kind,
    const std::function<std::optional<std::string>(std::size_t number, FaultDuration duration)>& play) {
  const auto fail_each = [&](FaultDuration duration, const char* suffix) {
    const std::size_t failed = test_support::fail_each_call([&](std::size_t number) { return play(number, duration); });
    std::printf("[ faults ] %s: %s%s: %zu\n", scenario.c_str(), kind, suffix, failed);
    return failed;
  };
  play(0, FaultDuration::once);
  if (testing::Test::HasFailure()) {
    ADD_FAILURE() << "when nothing fails";
    return 0;
  }
  const std::size_t failed = fail_each(FaultDuration::once, "");
  if (test_support::deep() && !testing::Test::HasFailure()) fail_each(FaultDuration::lasting, ", from then on");
  return failed;
}

}  // namespace faults_test
