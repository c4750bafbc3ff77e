#pragma once

#include <gmock/gmock.h>

#include "Controls.h"
#include "DialogDriver.h"
#include "ExpectedReports.h"
#include "Module.h"
#include "RecordingHost.h"
#include "References.h"
#include "ScratchRoot.h"

namespace module_test {

using test_support::references;
using test_support::take_reports;

/// The ids of the commands that the first `Initialize` adds.
inline constexpr long menu_id = test_support::first_command_id;
inline constexpr long hot_key_id = menu_id + 1;

/// A test with the module loaded. It fails when the module could not be unloaded at its end.
class ModuleTest : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(S_OK, module_.can_unload()); }

  Module module_;
};

/// A plug-in in a host in memory. The arguments of `Initialize` are good ones until a test says otherwise.
class HostedTest : public testing::Test {
 protected:
  void TearDown() override {
    menu_ = control_bar_ = context_menu_ = hot_keys_ = storage_ = nullptr;
    plugin_ = nullptr;
    EXPECT_EQ(S_OK, module_.can_unload());
  }

  HRESULT initialize() {
    return plugin_->Initialize(menu_, control_bar_, context_menu_, hot_keys_, registry_path_, storage_);
  }

  HRESULT command(long id) {
    VARIANT none = {};
    return plugin_->DoCommand(id, none);
  }

  /// The result of a command that opens nothing. A dialog that opens all the same is closed and fails the test.
  HRESULT result_without_dialog(long id) {
    const test_support::DialogDriver driver([id](HWND dialog) {
      ADD_FAILURE() << "command " << id << " opened a dialog";
      test_support::click(dialog, IDCANCEL);
    });
    return command(id);
  }

  test_support::HostCalls& calls() { return host_.calls(); }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  Module module_;
  test_support::RecordingHost host_;
  base::ComPtr<IDispatch> menu_ = host_.main_menu();
  base::ComPtr<IDispatch> control_bar_ = host_.main_menu();
  base::ComPtr<IDispatch> context_menu_ = host_.main_menu();
  base::ComPtr<IDispatch> hot_keys_ = host_.hot_keys();
  base::ComPtr<IDispatch> storage_ = host_.storage();
  _bstr_t registry_path_ = L"Software\\Orvane\\Test host";
  base::ComPtr<IkvPlugin> plugin_ = module_.plugin();
};

}  // namespace module_test
