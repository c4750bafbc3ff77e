#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Session.h"

namespace faults_test {

using Calls = std::vector<std::string>;

/// How a scenario went.
struct ScenarioResult {
  HRESULT hresult = S_OK;    ///< of the plug-in's last call
  bool edited = false;       ///< whether an editor opened
  bool as_intended = false;  ///< whether the user saw everything that there is to see when nothing fails
};

/// Something that a user or the host does with the plug-in. Played on a new host with `stored_rules`, it goes
/// through some of the calls of the module; the scenarios together go through all of them.
struct Scenario {
  const char* name;
  ScenarioResult (*play)(Session& session);
  /// What the plug-in's last call is to return when these calls of the host have returned `fault` instead of doing
  /// their work.
  HRESULT (*documented)(const ScenarioResult& result, const Calls& faulted_calls, const test_support::Fault& fault);
  /// What it may return, other than success, when the module gets no memory.
  HRESULT without_memory;
  /// What may be stored afterwards. The first is what the user means.
  std::vector<Rules> outcomes;
};

/// Shows a scenario by its name.
void PrintTo(const Scenario& scenario, std::ostream* out);

const std::vector<Scenario>& every_scenario();

/// What the host has at the start of each scenario.
Rules stored_rules();
std::vector<test_support::HostSetting> stored_settings();

}  // namespace faults_test
