#pragma once

#include <set>
#include <string>
#include <vector>

#include "LiveHandles.h"
#include "Module.h"

namespace faults_test {

/// Checks what a loaded module still holds, against what it held when this object was created.
class ModuleLeakCheck {
 public:
  explicit ModuleLeakCheck(const module_test::Module& module);

  /// How many GDI objects, device contexts and registry keys the module has acquired.
  int handles_acquired() const { return handles_.acquired(); }
  /// For each of these that the module has not released, the function that returned it.
  std::vector<std::string> handles_left() const { return handles_.left(); }

  /// Fails the test when the module holds an object, a window of this thread or a handle, or a heap is damaged.
  void expect_none() const;

 private:
  const module_test::Module& module_;
  test_support::LiveHandles handles_;
  std::set<HWND> windows_;
};

}  // namespace faults_test
