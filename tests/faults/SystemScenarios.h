#pragma once

#include <functional>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "Scenarios.h"

namespace faults_test {

/// What fails in a run: calls of the system, or allocations.
struct Injection {
  Arm arm;                                        ///< called at the start of the part that a scenario is about
  std::function<void()> clear_faults;             ///< from then on nothing fails
  std::function<std::set<std::string>()> failed;  ///< the functions of the system that have failed
};

/// Something that is done with a newly loaded module while something fails. It checks what must hold whatever failed.
struct SystemScenario {
  std::string name;
  std::function<void(const module_test::Module& module, const Injection& injection)> play;
};

/// Shows a scenario by its name.
void PrintTo(const SystemScenario& scenario, std::ostream* out);

/// Scenarios without a host or a user, most of them the first use of something in the module.
const std::vector<SystemScenario>& every_first_use();

/// The scenarios of `every_first_use` and those of the host and its user.
const std::vector<SystemScenario>& every_system_scenario();

}  // namespace faults_test
