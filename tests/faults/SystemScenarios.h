#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "FailingSystem.h"
#include "Scenarios.h"

namespace faults_test {

/// Something that is done with a newly loaded module while a call of the system fails. It checks what must hold
/// whatever failed, and calls `arm` at the start of the part that it is about.
struct SystemScenario {
  std::string name;
  std::function<void(const module_test::Module& module, test_support::FailingSystem& system, const Arm& arm)> play;
};

/// Shows a scenario by its name.
void PrintTo(const SystemScenario& scenario, std::ostream* out);

/// Those of the host and its user, and beside them what else reaches the module.
const std::vector<SystemScenario>& every_system_scenario();

}  // namespace faults_test
