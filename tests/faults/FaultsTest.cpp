#include "FaultsTest.h"

namespace faults_test {

using test_support::RecordingHost;

ScenarioResult play(const Scenario& scenario, const module_test::Module& module, RecordingHost& host, const Arm& arm) {
  host.rules() = stored_rules();
  host.settings() = stored_settings();
  Session session(module, host, arm);
  const ScenarioResult played = scenario.play(session);
  session.end();
  EXPECT_THAT(host.rules(), testing::AnyOfArray(scenario.outcomes));
  return played;
}

Calls play_undisturbed(const Scenario& scenario, const module_test::Module& module) {
  RecordingHost host;
  const ScenarioResult played = play(scenario, module, host, [&] {
    host.record_queries(true);
    host.calls().forget();
  });
  EXPECT_EQ(S_OK, played.answer) << scenario.name;
  EXPECT_TRUE(played.as_meant) << scenario.name;
  EXPECT_EQ(scenario.outcomes.front(), host.rules()) << scenario.name;
  return host.calls().all();
}

}  // namespace faults_test
