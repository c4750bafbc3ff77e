#include "SystemScenarios.h"

#include <gmock/gmock.h>

#include <ostream>
#include <set>

#include "DialogScript.h"
#include "FailingSystem.h"
#include "FaultsTest.h"
#include "LateBound.h"
#include "RegisteredTree.h"
#include "RegistryTree.h"

namespace faults_test {
namespace {

using module_test::Module;
using test_support::Fault;
using test_support::RegistryTree;
using test_support::ScratchRoot;
using testing::AnyOf;

/// The creation of the host's object that a scenario cannot do without.
std::string needed_creation(const Scenario& scenario) {
  const bool makes_storage = scenario.name == std::string("InitializeWithoutStorage");
  return makes_storage ? "kvStorage::CreateInstance" : "kvTable::CreateInstance";
}

/// What a call of the module may return: only a missing class of the host reaches the caller.
auto documented_result(const Scenario& scenario, const ScenarioResult& result, const std::set<std::string>& failed) {
  const bool no_object = failed.contains("CoCreateInstance") || failed.contains("OleRun");
  const Calls faulted_calls = no_object ? Calls{needed_creation(scenario)} : Calls{};
  return AnyOf(S_OK, scenario.documented(result, faulted_calls, {test_support::no_class, Fault::Out::untouched}));
}

SystemScenario hosted(const Scenario& scenario) {
  return {scenario.name, [scenario](const Module& module, const Injection& injection) {
            test_support::RecordingHost host;
            const ScenarioResult result = play(scenario, module, host, injection.arm);
            EXPECT_THAT(result.hresult, documented_result(scenario, result, injection.failed()));
          }};
}

/// The list of a user who has never opened it.
SystemScenario first_list(const Scenario& list) {
  const SystemScenario any = hosted(list);
  return {"FirstList", [any](const Module& module, const Injection& injection) {
            test_support::delete_registry_tree(HKEY_CURRENT_USER, L"");
            any.play(module, injection);
          }};
}

/// The first class object and the first object.
void play_first_object(const Module& module, const Injection& injection) {
  const ModuleLeakCheck leak_check(module);
  {
    base::ComPtr<IClassFactory> factory;
    base::ComPtr<IkvPlugin> plugin;
    injection.arm();
    HRESULT hresult = module.get_class_object(__uuidof(CzdExpirationRulePlugin), __uuidof(IClassFactory),
                                              reinterpret_cast<void**>(&factory));
    EXPECT_EQ(hresult == S_OK, factory != nullptr);
    if (factory) {
      hresult = factory->CreateInstance(nullptr, __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin));
      EXPECT_EQ(hresult == S_OK, plugin != nullptr);
    }
    injection.clear_faults();
    EXPECT_THAT(hresult, AnyOf(S_OK, E_OUTOFMEMORY));
    EXPECT_TRUE(module.plugin()) << "the next one is created";
  }
  leak_check.expect_none();
}

/// Has the plug-in report that it got nothing.
void provoke_report(IkvPlugin* plugin) {
  EXPECT_EQ(E_INVALIDARG, plugin->Initialize(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
}

/// Whether the user's setting to be warned can be read and the warning shown.
bool can_be_warned(const std::set<std::string>& failed) {
  return failed.count("RegOpenKeyExW") + failed.count("RegQueryValueExW") + failed.count("MessageBoxW") == 0;
}

/// The module's first report creates the client and looks for its library; the user wants a warning when that fails,
/// and no report arrives then, ever.
void play_first_report(const Module& module, const Injection& injection) {
  test_support::write_registry_text(HKEY_CURRENT_USER, L"Software\\Orvane\\Snagtrap", L"", L"tell me");
  const test_support::DialogScript user({});
  const ModuleLeakCheck leak_check(module);
  {
    const auto plugin = module.plugin();
    injection.arm();
    provoke_report(plugin);
    injection.clear_faults();
    test_support::take_reports();
    provoke_report(plugin);
    const bool arrives = !test_support::take_reports().empty();
    EXPECT_EQ(!arrives && can_be_warned(injection.failed()) ? 1 : 0, user.warnings());
    EXPECT_TRUE(!arrives || injection.failed() != std::set<std::string>{"GetProcAddress"}) << "by which way?";
  }
  leak_check.expect_none();
  test_support::delete_registry_tree(HKEY_CURRENT_USER, L"");
}

/// A failure to load the type information is kept as long as the module is loaded.
void play_late_bound(const Module& module, const Injection& injection) {
  const ModuleLeakCheck leak_check(module);
  {
    const auto plugin = module.plugin();
    DISPID id = DISPID_UNKNOWN;
    injection.arm();
    const HRESULT hresult = module_test::id_of(plugin, L"DoCommand", id);
    injection.clear_faults();
    EXPECT_THAT(hresult,
                AnyOf(S_OK, E_OUTOFMEMORY, TYPE_E_CANTLOADLIBRARY, HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY)));
    EXPECT_EQ(hresult == S_OK ? 3 : DISPID_UNKNOWN, id);
    EXPECT_EQ(hresult, module_test::id_of(plugin, L"DoCommand", id));
  }
  leak_check.expect_none();
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

bool is_unregistered() {
  const RegistryTree shared = {{L"AppID\\", L""}, {L"CLSID\\", L""}};
  return module_test::without_type_library(test_support::registry_tree(HKEY_CLASSES_ROOT)) == shared &&
         !type_library_is_registered();
}

void register_and_unregister(const Module& module) {
  EXPECT_EQ(S_OK, module.register_server());
  EXPECT_TRUE(is_registered());
  EXPECT_EQ(S_OK, module.unregister_server());
  EXPECT_TRUE(is_unregistered());
}

void play_register(const Module& module, const Injection& injection) {
  const ScratchRoot classes(HKEY_CLASSES_ROOT);
  const ModuleLeakCheck leak_check(module);
  injection.arm();
  const HRESULT hresult = module.register_server();
  injection.clear_faults();
  EXPECT_EQ(is_registered() ? S_OK : E_FAIL, SUCCEEDED(hresult) ? hresult : E_FAIL);
  leak_check.expect_none();
  register_and_unregister(module);
}

void play_unregister(const Module& module, const Injection& injection) {
  const ScratchRoot classes(HKEY_CLASSES_ROOT);
  const ModuleLeakCheck leak_check(module);
  EXPECT_EQ(S_OK, module.register_server());
  injection.arm();
  const HRESULT hresult = module.unregister_server();
  injection.clear_faults();
  EXPECT_EQ(is_unregistered() ? S_OK : E_FAIL, SUCCEEDED(hresult) ? hresult : E_FAIL);
  leak_check.expect_none();
  register_and_unregister(module);
}

}  // namespace

void PrintTo(const SystemScenario& scenario, std::ostream* out) { *out << scenario.name; }

const std::vector<SystemScenario>& every_first_use() {
  static const std::vector<SystemScenario> scenarios = {{"Register", play_register},
                                                        {"Unregister", play_unregister},
                                                        {"FirstObject", play_first_object},
                                                        {"FirstReport", play_first_report},
                                                        {"LateBound", play_late_bound}};
  return scenarios;
}

const std::vector<SystemScenario>& every_system_scenario() {
  static const std::vector<SystemScenario> scenarios = [] {
    std::vector<SystemScenario> all = every_first_use();
    for (const Scenario& scenario : every_scenario()) {
      if (scenario.name == std::string("List")) all.push_back(first_list(scenario));
      all.push_back(hosted(scenario));
    }
    return all;
  }();
  return scenarios;
}

}  // namespace faults_test
