#include "Session.h"

#include <gmock/gmock.h>

#include <utility>

#include "HeapCheck.h"

namespace faults_test {
namespace {

constexpr long menu_command = 501;

BOOL CALLBACK collect(HWND window, LPARAM windows) {
  reinterpret_cast<std::set<HWND>*>(windows)->insert(window);
  return TRUE;
}

std::set<HWND> windows_of_this_thread() {
  std::set<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

}  // namespace

Session::Session(const module_test::Module& module, test_support::FakeHost& host, Arm arm)
    : module_(module),
      host_(host),
      arm_(std::move(arm)),
      handles_(module.handle()),
      windows_(windows_of_this_thread()),
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

HRESULT Session::show(long rule_id) { return module_test::ask<IzdExpirationRulesPlugin>(plugin_)->Show(rule_id); }

void Session::end() {
  EXPECT_EQ(S_OK, plugin_->Uninitialize());
  menu_ = hot_keys_ = storage_ = nullptr;
  plugin_ = nullptr;
  EXPECT_EQ(S_OK, module_.can_unload());
  for (const std::string& object : host_.living()) ADD_FAILURE() << "not released: " << object;
  EXPECT_EQ(windows_, windows_of_this_thread()) << "a window is left";
  EXPECT_THAT(handles_.left(), testing::IsEmpty());
  EXPECT_TRUE(test_support::heaps_are_intact());
}

}  // namespace faults_test
