#include "ProgressDialog.h"

#include <commctrl.h>

#include "ModulePath.h"
#include "UiLanguage.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr ULONGLONG period_ms = 50;
constexpr int bar_steps = 1000;

}  // namespace

ProgressDialog::~ProgressDialog() {
  if (!window_) return;
  if (owner_was_enabled_) EnableWindow(owner_, TRUE);  // first, or the focus would go to another program
  DestroyWindow(window_);
}

bool ProgressDialog::go_on(std::size_t done, std::size_t total) {
  const ULONGLONG now = GetTickCount64();
  if (now - began_ < delay_ms || now - shown_ < period_ms) return true;
  shown_ = now;
  if (!window_) show();
  if (!window_) return true;
  const double share = total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total);
  SendDlgItemMessageW(window_, IDC_PROGRESS, PBM_SETPOS, static_cast<WPARAM>(share * bar_steps), 0);
  dispatch_messages();
  return !cancelled_;
}

void ProgressDialog::dispatch_messages() {
  MSG message{};
  while (!cancelled_ && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (IsDialogMessageW(window_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void ProgressDialog::show() {
  window_ = CreateDialogIndirectParamW(base::module_instance(), find_dialog(IDD_PROGRESS), owner_, &procedure,
                                       reinterpret_cast<LPARAM>(this));
  if (!window_) return;
  SendDlgItemMessageW(window_, IDC_PROGRESS, PBM_SETRANGE32, 0, bar_steps);
  owner_was_enabled_ = !EnableWindow(owner_, FALSE);
  ShowWindow(window_, SW_SHOW);
}

INT_PTR CALLBACK ProgressDialog::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lparam);
    return TRUE;
  }
  auto* dialog = reinterpret_cast<ProgressDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (message != WM_COMMAND || LOWORD(wparam) != IDCANCEL || !dialog) return FALSE;
  dialog->cancelled_ = true;
  return TRUE;
}

}  // namespace workbench
