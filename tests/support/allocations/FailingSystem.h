#pragma once

#include <windows.h>

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "FaultLoop.h"
#include "ImportPatch.h"

namespace test_support {

/// While it lives, a loaded module's calls of the functions with which it opens, creates or finds objects of the system
/// are recorded and can fail: the registry, windows, GDI, libraries, resources, version blocks, type libraries, classes
/// and locks. A call that fails does nothing and returns what the function returns without memory; only closing a key
/// does its work. One lives at a time; UI thread only.
class FailingSystem {
 public:
  explicit FailingSystem(HMODULE module);
  ~FailingSystem();
  FailingSystem(const FailingSystem&) = delete;
  FailingSystem& operator=(const FailingSystem&) = delete;

  /// The calls count from now on, and the `number`th fails, counted from 1; 0 fails none.
  void arm(std::size_t number, FaultDuration duration = FaultDuration::once);
  /// From now on nothing fails.
  void clear_faults();

  /// The functions called since it was armed, in order.
  const std::vector<std::string>& calls() const;
  /// The functions that failed.
  const std::set<std::string>& failed() const;

  /// Every function that can fail.
  static std::set<std::string> functions();

 private:
  std::deque<ImportPatch> patches_;
};

/// The result for a class that cannot be created.
inline constexpr HRESULT no_class = REGDB_E_CLASSNOTREG;

}  // namespace test_support
