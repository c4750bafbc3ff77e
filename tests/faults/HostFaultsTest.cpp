#include <cstdio>
#include <set>

#include "FaultRun.h"
#include "FaultsTest.h"

namespace faults_test {
namespace {

using test_support::Fault;
using test_support::RecordingHost;

/// Every method of the host that the module calls. `Release` and `AddRef` cannot fail.
const std::set<std::string> called_methods = {
    "kvStorage::CreateInstance",
    "kvTable::CreateInstance",
    "kvRuleFilter::CreateInstance",
    "kvStorage::QueryInterface",
    "kvTable::QueryInterface",
    "kvMainMenu::QueryInterface",
    "kvHotKeyCollection::QueryInterface",
    "kvHotKey::QueryInterface",
    "IRunnableObject::Run",
    "IkvMainMenu::FindSubMenu",
    "IkvMainMenu::AddSubMenu",
    "IkvSubMenu::AddCommand",
    "IkvMenuItem::get_CommandID",
    "IkvHotKeyCollection::AddHotKey",
    "IkvHotKey::get_CommandID",
    "IkvSymbolSourceService::load_symbol_source_settings",
    "IkvExpirationRuleService::load_rules",
    "IkvExpirationRuleService::delete_rule",
    "IkvExpirationRuleService::add_rule",
    "IkvExpirationRuleService::update_rule",
    "IkvRuleFilter::SetRuleID",
    "IkvTable::GetRowCount",
    "IkvTable::GetFieldByID",
    "IkvTable::AddField",
    "IkvTable::AppendRow",
    "IkvTable::MoveLast",
    "IkvTable::MoveFirst",
    "IkvTable::MoveNext",
    "IkvTable::IsEOF",
    "IkvField::GetText",
    "IkvField::SetText",
    "IkvField::GetLong",
    "IkvField::SetLong",
};

using HostFaults = FaultsTest;

TEST_P(HostFaults, LeadToTheDocumentedResultAndTearNothing) {
  const Scenario& scenario = GetParam();
  for (const Fault& fault : test_support::faults_to_inject()) {
    const std::size_t injected = test_support::fail_each_call(fault, [&](RecordingHost& host, const Arm& arm) {
      const ScenarioResult result = play(scenario, module_, host, arm);
      EXPECT_EQ(scenario.documented(result, host.calls().faulted_calls(), fault), result.hresult);
      test_support::take_reports();
    });
    if (HasFailure()) return;
    std::printf("[ faults ] %s: %s: %zu\n", scenario.name, test_support::described(fault).c_str(), injected);
    EXPECT_GT(injected, 0u);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, HostFaults, testing::ValuesIn(every_scenario()),
                         [](const auto& test) { return test.param.name; });

TEST(HostFaultsTogether, GoThroughEveryCallOfTheModule) {
  const test_support::ScratchRoot user(HKEY_CURRENT_USER);
  const module_test::Module module;
  std::set<std::string> visited;
  for (const Scenario& scenario : every_scenario()) {
    for (const std::string& call : play_undisturbed(scenario, module)) visited.insert(call.substr(0, call.find('(')));
  }
  EXPECT_EQ(called_methods, visited);
}

}  // namespace
}  // namespace faults_test
