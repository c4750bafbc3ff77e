#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Module.h"
#include "ModuleLeakCheck.h"
#include "RecordingHost.h"

namespace faults_test {

using Rules = std::vector<test_support::HostRule>;

/// A scenario calls this at the start of the part that it tests; nothing fails before.
using Arm = std::function<void()>;

/// One run of a scenario: a plug-in of the built module in a host over a store in memory. `end` releases everything.
class Session {
 public:
  Session(const module_test::Module& module, test_support::RecordingHost& host, Arm arm);

  void arm() const { arm_(); }
  /// From now on the host works again.
  void clear_faults() const { host_.calls().clear_faults(); }

  HRESULT initialize();
  HRESULT initialize_without_storage();
  /// Runs the menu's command.
  HRESULT command();
  HRESULT show(long rule_id);

  /// How many GDI objects, device contexts and registry keys the module has acquired.
  int handles() const { return leak_check_.handles_acquired(); }
  /// For each of these that the module has not released, the function that returned it.
  std::vector<std::string> handles_left() const { return leak_check_.handles_left(); }

  /// Calls `Uninitialize` and releases the plug-in, as a host does at its end. Fails the test when the module holds
  /// anything afterwards.
  void end();

 private:
  HRESULT initialize_with(IDispatch* storage);

  test_support::RecordingHost& host_;
  Arm arm_;
  ModuleLeakCheck leak_check_;
  base::ComPtr<IDispatch> menu_;
  base::ComPtr<IDispatch> hot_keys_;
  base::ComPtr<IDispatch> storage_;
  _bstr_t registry_path_ = L"Software\\Orvane\\Test host";
  base::ComPtr<IkvPlugin> plugin_;
};

}  // namespace faults_test
