#include "Session.h"

#include <gtest/gtest.h>

#include <utility>

namespace faults_test {
namespace {

constexpr long menu_command = test_support::first_command_id;

}  // namespace

Session::Session(const module_test::Module& module, test_support::RecordingHost& host, Arm arm)
    : host_(host),
      arm_(std::move(arm)),
      leak_check_(module),
      menu_(host.main_menu()),
      hot_keys_(host.hot_keys()),
      storage_(host.storage()),
      plugin_(module.plugin()) {}

HRESULT Session::initialize() { return initialize_with(storage_); }

HRESULT Session::initialize_without_storage() { return initialize_with(nullptr); }

HRESULT Session::initialize_with(IDispatch* storage) {
  return plugin_->Initialize(menu_, menu_, menu_, hot_keys_, registry_path_, storage);
}

HRESULT Session::command() {
  const VARIANT none = {};
  return plugin_->DoCommand(menu_command, none);
}

HRESULT Session::show(long rule_id) { return base::try_query<IzdExpirationRulesPlugin>(plugin_)->Show(rule_id); }

void Session::end() {
  EXPECT_EQ(S_OK, plugin_->Uninitialize());
  menu_ = hot_keys_ = storage_ = nullptr;
  plugin_ = nullptr;
  for (const std::string& object : host_.living()) ADD_FAILURE() << "not released: " << object;
  leak_check_.expect_none();
}

}  // namespace faults_test
