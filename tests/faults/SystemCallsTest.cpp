#include <map>
#include <set>

#include "FailingSystem.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingSystem;
using testing::IsEmpty;

using Names = std::set<std::string>;

/// What no scenario calls, because only dialogs of others do or because the library of the reports is loaded here: the
/// tests in which it fails.
const std::map<std::string, const char*> failed_in_their_components = {
    {"BeginPaint", "resizable.MaskedGrip.DrawsNothingWithoutADcToPaintOn"},
    {"BitBlt", "resizable.MaskedGrip.DrawsNothingWhenCopyingFails"},
    {"CreateBitmap", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeCreated"},
    {"CreateCompatibleBitmap", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeCreated"},
    {"CreateCompatibleDC", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeCreated"},
    {"GetDC", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeCreated"},
    {"LoadLibraryA", "diagnostics.LibrarySearch.FindsNothingAtARegisteredPathWithoutFile"},
    {"OffsetRgn", "resizable.EraseRegion.LeavesOutAChildWhoseRegionCannotBeMoved"},
    {"RegGetValueA", "diagnostics.LibraryMissing.ReportsDoNothingAndShowNoBox"},
    {"SelectObject", "resizable.MaskedGrip.DrawsNothingWhenItsBitmapsCannotBeSelected"},
};

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
  for (const auto& [function, test] : failed_in_their_components) {
    EXPECT_TRUE(visited.insert(function).second) << function << " fails in a scenario too";
  }
  Names forgotten = FailingSystem::functions();
  for (const std::string& function : visited) forgotten.erase(function);
  EXPECT_THAT(forgotten, IsEmpty()) << "no test makes these fail";
}

}  // namespace
}  // namespace faults_test
