#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "Application.h"
#include "ListReader.h"
#include "MemoryRuleStore.h"
#include "ModulePath.h"
#include "resource.h"

namespace workbench {

inline constexpr UINT_PTR own_menus = 3;

/// Calls `visit` for each dialog that opens over a window, from the dialog's message loop, until it returns true.
class DialogVisitor {
 public:
  DialogVisitor(HWND owner, std::function<bool(HWND dialog)> visit) : owner_(owner), visit_(std::move(visit)) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &look);
  }
  ~DialogVisitor() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
  }
  DialogVisitor(const DialogVisitor&) = delete;
  DialogVisitor& operator=(const DialogVisitor&) = delete;

  /// Dispatches messages until the visitor is done.
  void wait() const {
    MSG message{};
    while (!done_ && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    pump_messages();
  }

 private:
  static void CALLBACK look(HWND, UINT, UINT_PTR, DWORD) noexcept {
    DialogVisitor& visitor = *current_;
    HWND dialog = GetLastActivePopup(visitor.owner_);
    if (visitor.done_ || dialog == visitor.owner_) return;
    visitor.done_ = visitor.visit_(dialog);
  }

  static inline DialogVisitor* current_ = nullptr;
  HWND owner_;
  std::function<bool(HWND)> visit_;
  UINT_PTR timer_ = 0;
  bool done_ = false;
};

/// Answers true, so that a visit can end with it.
inline bool press_button(HWND dialog, int id) {
  SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0);
  return true;
}

inline std::wstring message_in_box(HWND box) {
  wchar_t message[500] = L"";
  for (HWND part = GetWindow(box, GW_CHILD); part; part = GetWindow(part, GW_HWNDNEXT)) {
    wchar_t class_name[32] = L"";
    GetClassNameW(part, class_name, static_cast<int>(std::size(class_name)));
    if (std::wstring(class_name) == L"Static") GetWindowTextW(part, message, static_cast<int>(std::size(message)));
  }
  return message;
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

  void start(std::shared_ptr<RuleStore> store) { application_.emplace(std::move(store), L"C:\\rules.db"); }
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

  std::shared_ptr<MemoryRuleStore> store_ = std::make_shared<MemoryRuleStore>();
  std::optional<Application> application_;
};

}  // namespace workbench
