#pragma once

#include <gtest/gtest.h>

#include "Application.h"
#include "DialogDriver.h"
#include "ListReader.h"
#include "MemoryRuleStore.h"
#include "MessagePump.h"
#include "ModulePath.h"
#include "resource.h"

namespace workbench {

inline constexpr UINT_PTR own_menus = 5;

/// Dispatches messages until the driver has visited a dialog and that is closed. Fails the test when none opens.
inline void wait_for_dialog(const test_support::DialogDriver& driver) {
  const ULONGLONG end = GetTickCount64() + 10'000;
  while (driver.dialogs() == 0 && GetTickCount64() < end) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
    test_support::pump_messages();
  }
  EXPECT_NE(driver.dialogs(), 0) << "no dialog was opened";
}

/// Waits for the message box that the program opens by itself, closes it and returns its text.
inline std::wstring text_of_next_box() {
  std::wstring text;
  const test_support::DialogDriver driver([&](HWND box) {
    text = test_support::read_message_box(box).text;
    test_support::close_message_box(box);
  });
  wait_for_dialog(driver);
  return text;
}

/// The box of another thread of this process that says what is waited for; null while it is not shown.
inline HWND shown_wait_box() {
  HWND box = nullptr;
  while ((box = FindWindowExW(nullptr, box, WC_DIALOG, nullptr))) {
    DWORD process = 0;
    GetWindowThreadProcessId(box, &process);
    if (process == GetCurrentProcessId() && GetDlgItem(box, IDC_WAIT_MESSAGE)) return box;
  }
  return nullptr;
}

inline std::filesystem::path real_module() { return base::path_beside_program(L"zdExpirationRules.dll"); }

inline bool module_is_loaded() { return GetModuleHandleW(L"zdExpirationRules.dll") != nullptr; }

/// The program over a store in memory.
class ApplicationTest : public testing::Test {
 protected:
  ApplicationTest() {
    store_->add_rule({.name = L"CSI 300"});
    store_->replace_settings({{L"IF.CFFEX", L"CSI 300"}});
  }

  void start(std::shared_ptr<RuleStore> store) { application_.emplace(OpenedStore{std::move(store), L"C:\\rules.db"}); }
  void start() { start(store_); }

  HWND window() const { return application_->window(); }
  HWND rules() const { return GetDlgItem(window(), IDC_RULES); }
  HWND settings() const { return GetDlgItem(window(), IDC_SETTINGS); }

  std::wstring status(WPARAM part) const {
    wchar_t value[500] = L"";
    SendMessageW(GetDlgItem(window(), IDC_STATUS_BAR), SB_GETTEXTW, part, reinterpret_cast<LPARAM>(value));
    return value;
  }
  std::wstring message() const { return status(0); }

  void press(UINT command) { SendMessageW(window(), WM_COMMAND, command, 0); }

  /// Picks the command that the module put into its menu.
  void pick_plugin_command() {
    HMENU submenu = GetSubMenu(GetMenu(window()), own_menus - 1);
    press(GetMenuItemID(submenu, 0));
  }

  /// Opens the selected rule in the module's editor and saves it under a name; `meanwhile` happens when the editor is
  /// open.
  void save_rule_as(
      const wchar_t* name, const std::function<void()>& meanwhile = [] {}) {
    const test_support::DialogDriver user([&](HWND editor) {
      meanwhile();
      SetWindowTextW(FindWindowExW(editor, nullptr, L"Edit", nullptr), name);
      test_support::click(editor, IDOK);
    });
    press(IDM_OPEN_RULE);
  }

  std::shared_ptr<MemoryRuleStore> store_ = std::make_shared<MemoryRuleStore>();
  std::optional<Application> application_;
};

}  // namespace workbench
