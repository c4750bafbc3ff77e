#include "SystemScenarios.h"

#include <gmock/gmock.h>

#include <ostream>
#include <set>

#include "Clerk.h"
#include "FaultsTest.h"
#include "LateBound.h"
#include "RegisteredTree.h"
#include "RegistryTree.h"

namespace faults_test {
namespace {

using module_test::Module;
using test_support::FailingSystem;
using test_support::Fault;
using test_support::LiveHandles;
using test_support::RegistryTree;
using test_support::ScratchRoot;
using testing::AnyOf;
using testing::IsEmpty;

/// What a call of the module may answer: only the lack of a class of the host reaches the caller.
auto documented_answer(const Scenario& scenario, const Played& played, const std::set<std::string>& failed) {
  const bool no_object = failed.count("CoCreateInstance") != 0 || failed.count("OleRun") != 0;
  const Calls struck = no_object ? Calls{"kvTable::CreateInstance"} : Calls{};
  return AnyOf(S_OK, scenario.documented(played, struck, {test_support::no_class, Fault::Out::untouched}));
}

SystemScenario hosted(const Scenario& scenario) {
  return {scenario.name, [scenario](const Module& module, FailingSystem& system, const Arm& arm) {
            test_support::FakeHost host;
            const Played played = play(scenario, module, host, arm);
            EXPECT_THAT(played.answer, documented_answer(scenario, played, system.failed()));
          }};
}

/// The list of a user who has never opened it.
SystemScenario first_list(const Scenario& list) {
  const SystemScenario any = hosted(list);
  return {"FirstList", [any](const Module& module, FailingSystem& system, const Arm& arm) {
            test_support::delete_registry_tree(HKEY_CURRENT_USER, L"");
            any.play(module, system, arm);
          }};
}

/// The module's first report makes the client and looks for its library; the user wants to be told when that fails.
void play_first_report(const Module& module, FailingSystem&, const Arm& arm) {
  test_support::write_registry_text(HKEY_CURRENT_USER, L"Software\\Orvane\\Snagtrap", L"", L"tell me");
  const Clerk clerk({});
  {
    const auto plugin = module.plugin();
    arm();
    EXPECT_EQ(E_INVALIDARG, plugin->Initialize(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
  }
  EXPECT_EQ(S_OK, module.can_unload());
  test_support::delete_registry_tree(HKEY_CURRENT_USER, L"");
}

/// A failure to load the type information is kept as long as the module is loaded.
void play_late_bound(const Module& module, FailingSystem& system, const Arm& arm) {
  {
    const auto plugin = module.plugin();
    DISPID id = DISPID_UNKNOWN;
    arm();
    const HRESULT answer = module_test::id_of(plugin, L"DoCommand", id);
    system.heal();
    EXPECT_THAT(answer, AnyOf(S_OK, TYPE_E_CANTLOADLIBRARY, HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY)));
    EXPECT_EQ(answer == S_OK ? 3 : DISPID_UNKNOWN, id);
    EXPECT_EQ(answer, module_test::id_of(plugin, L"DoCommand", id));
  }
  EXPECT_EQ(S_OK, module.can_unload());
}

// Registration.

bool type_library_is_registered() {
  return test_support::registry_key_exists(HKEY_CLASSES_ROOT, module_test::type_library_key());
}

bool is_registered() {
  const RegistryTree classes = test_support::registry_tree(HKEY_CLASSES_ROOT);
  return module_test::without_type_library(classes) == module_test::registered_tree(module_test::built_module_path()) &&
         type_library_is_registered();
}

bool is_gone() {
  const RegistryTree shared = {{L"AppID\\", L""}, {L"CLSID\\", L""}};
  return module_test::without_type_library(test_support::registry_tree(HKEY_CLASSES_ROOT)) == shared &&
         !type_library_is_registered();
}

void register_and_unregister(const Module& module) {
  EXPECT_EQ(S_OK, module.register_server());
  EXPECT_TRUE(is_registered());
  EXPECT_EQ(S_OK, module.unregister_server());
  EXPECT_TRUE(is_gone());
}

void play_register(const Module& module, FailingSystem& system, const Arm& arm) {
  const ScratchRoot classes(HKEY_CLASSES_ROOT);
  const LiveHandles handles(module.handle());
  arm();
  const HRESULT answer = module.register_server();
  system.heal();
  EXPECT_EQ(is_registered() ? S_OK : E_FAIL, SUCCEEDED(answer) ? answer : E_FAIL);
  EXPECT_THAT(handles.left(), IsEmpty());
  register_and_unregister(module);
}

void play_unregister(const Module& module, FailingSystem& system, const Arm& arm) {
  const ScratchRoot classes(HKEY_CLASSES_ROOT);
  const LiveHandles handles(module.handle());
  EXPECT_EQ(S_OK, module.register_server());
  arm();
  const HRESULT answer = module.unregister_server();
  system.heal();
  EXPECT_EQ(is_gone() ? S_OK : E_FAIL, SUCCEEDED(answer) ? answer : E_FAIL);
  EXPECT_THAT(handles.left(), IsEmpty());
  register_and_unregister(module);
}

}  // namespace

void PrintTo(const SystemScenario& scenario, std::ostream* out) { *out << scenario.name; }

const std::vector<SystemScenario>& every_system_scenario() {
  static const std::vector<SystemScenario> scenarios = [] {
    std::vector<SystemScenario> all = {{"Register", play_register},
                                       {"Unregister", play_unregister},
                                       {"FirstReport", play_first_report},
                                       {"LateBound", play_late_bound}};
    for (const Scenario& scenario : every_scenario()) {
      if (scenario.name == std::string("List")) all.push_back(first_list(scenario));
      all.push_back(hosted(scenario));
    }
    return all;
  }();
  return scenarios;
}

}  // namespace faults_test
