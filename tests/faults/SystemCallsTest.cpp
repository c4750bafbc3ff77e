#include <set>

#include "FailingSystem.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingSystem;
using testing::IsEmpty;

using Names = std::set<std::string>;

/// What no scenario calls, because only dialogs of others do or because the library of the reports is loaded here. The
/// tests of the resizable library and of the diagnostics client inject faults into these.
const Names failed_in_their_components = {"BeginPaint",         "BitBlt",      "CreateBitmap", "CreateCompatibleBitmap",
                                          "CreateCompatibleDC", "GetDC",       "LoadLibraryA", "OffsetRgn",
                                          "RegGetValueA",       "SelectObject"};

TEST(SystemCalls, OfTheModuleFailInAScenarioOrInTheirComponent) {
  const test_support::ScratchRoot user(HKEY_CURRENT_USER);
  Names visited;
  for (const SystemScenario& scenario : every_system_scenario()) {
    const module_test::Module module;
    FailingSystem system(module.handle());
    scenario.play(module, {[&] { system.arm(0); }, [] {}, [] { return Names(); }});
    visited.insert(system.calls().begin(), system.calls().end());
    test_support::take_reports();
  }
  for (const std::string& function : failed_in_their_components) {
    EXPECT_TRUE(visited.insert(function).second)
        << function << " fails in a scenario too; take it off failed_in_their_components";
  }
  Names forgotten = FailingSystem::functions();
  for (const std::string& function : visited) forgotten.erase(function);
  EXPECT_THAT(forgotten, IsEmpty())
      << "add a scenario that calls them, or a test of their component and a line in failed_in_their_components";
}

}  // namespace
}  // namespace faults_test
