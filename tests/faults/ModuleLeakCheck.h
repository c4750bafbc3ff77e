#pragma once

#include <set>
#include <string>
#include <vector>

#include "LiveHandles.h"
#include "Module.h"

namespace faults_test {

/// What a loaded module must not leave behind, whatever is done with it: created before, queried afterwards.
class ModuleLeakCheck {
 public:
  explicit ModuleLeakCheck(const module_test::Module& module);

  /// How many GDI objects, device contexts and registry keys the module has had.
  int handles_acquired() const { return handles_.acquired(); }
  /// The function that gave each of them that the module has not given back.
  std::vector<std::string> handles_left() const { return handles_.left(); }

  /// Fails the test when the module holds an object, a window of this thread or a handle, or a heap is damaged.
  void expect_none() const;

 private:
  const module_test::Module& module_;
  test_support::LiveHandles handles_;
  std::set<HWND> windows_;
};

}  // namespace faults_test
