#include "DialogDriver.h"

#include <utility>

namespace test_support {
namespace {

constexpr UINT interval_ms = 10;

DialogDriver* driver = nullptr;

BOOL CALLBACK find_dialog(HWND window, LPARAM found) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, ARRAYSIZE(name));
  const bool is_dialog = std::wstring(name) == L"#32770" && IsWindowVisible(window) && IsWindowEnabled(window);
  if (is_dialog) *reinterpret_cast<HWND*>(found) = window;
  return !is_dialog;
}

BOOL CALLBACK collect(HWND window, LPARAM windows) {
  reinterpret_cast<std::set<HWND>*>(windows)->insert(window);
  return TRUE;
}

HWND focus_in(HWND dialog) {
  const HWND focus = GetFocus();
  return focus && IsChild(dialog, focus) ? focus : dialog;
}

}  // namespace

DialogDriver::DialogDriver(Action action)
    : action_(std::move(action)), timer_(SetTimer(nullptr, 0, interval_ms, look)) {
  driver = this;
}

DialogDriver::~DialogDriver() {
  KillTimer(nullptr, timer_);
  driver = nullptr;
}

void CALLBACK DialogDriver::look(HWND, UINT, UINT_PTR, DWORD) {
  HWND dialog = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), find_dialog, reinterpret_cast<LPARAM>(&dialog));
  if (!driver || dialog == driver->last_) return;
  driver->last_ = dialog;
  if (dialog) driver->handle(dialog);
}

void DialogDriver::handle(HWND dialog) {
  ++dialogs_;
  action_(dialog);
}

void click(HWND dialog, int button) { SendDlgItemMessageW(dialog, button, BM_CLICK, 0, 0); }

void press_key(HWND dialog, WPARAM virtual_key) {
  PostMessageW(focus_in(dialog), WM_KEYDOWN, virtual_key, 1);
  PostMessageW(focus_in(dialog), WM_KEYUP, virtual_key, static_cast<LPARAM>(0xC0000001));
}

void press_mnemonic(HWND dialog, wchar_t letter) {
  constexpr LPARAM alt_is_down = 1 << 29;
  PostMessageW(focus_in(dialog), WM_SYSCHAR, letter, alt_is_down | 1);
}

std::set<HWND> windows_of_this_thread() {
  std::set<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

std::wstring window_text(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::wstring item_text(HWND dialog, int item) { return window_text(GetDlgItem(dialog, item)); }

}  // namespace test_support
