#include "DialogVisitor.h"

#include <gtest/gtest.h>

#include <utility>

namespace faults_test {
namespace {

constexpr UINT visit_message = WM_APP;
constexpr int patience = 8;

DialogVisitor* visitor = nullptr;

bool is_dialog(const CREATESTRUCTW& creation) {
  const auto name = reinterpret_cast<ULONG_PTR>(creation.lpszClass);
  return IS_INTRESOURCE(name) ? name == reinterpret_cast<ULONG_PTR>(WC_DIALOG)
                              : std::wstring(creation.lpszClass) == L"#32770";
}

}  // namespace

DialogVisitor::DialogVisitor(Visit visit)
    : visit_(std::move(visit)),
      messages_(CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)),
      hook_(SetWindowsHookExW(WH_CBT, see_window, nullptr, GetCurrentThreadId())) {
  visitor = this;
  SetWindowLongPtrW(messages_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(receive));
}

DialogVisitor::~DialogVisitor() {
  UnhookWindowsHookEx(hook_);
  DestroyWindow(messages_);
  visitor = nullptr;
}

LRESULT CALLBACK DialogVisitor::see_window(int code, WPARAM window, LPARAM creation) {
  if (code == HCBT_CREATEWND && visitor && is_dialog(*reinterpret_cast<CBT_CREATEWNDW*>(creation)->lpcs)) {
    visitor->expect_dialog(reinterpret_cast<HWND>(window));
  }
  return CallNextHookEx(nullptr, code, window, creation);
}

LRESULT CALLBACK DialogVisitor::receive(HWND window, UINT message, WPARAM dialog, LPARAM serial) {
  if (message != visit_message || !visitor) return DefWindowProcW(window, message, dialog, serial);
  visitor->call_on(reinterpret_cast<HWND>(dialog), static_cast<int>(serial));
  return 0;
}

// The loop of the dialog is the first to take the message.
void DialogVisitor::expect_dialog(HWND dialog) {
  known_[dialog] = {++dialogs_, 0};
  PostMessageW(messages_, visit_message, reinterpret_cast<WPARAM>(dialog), dialogs_);
}

void DialogVisitor::call_on(HWND dialog, int serial) {
  const auto found = known_.find(dialog);
  if (found == known_.end() || found->second.serial != serial) return;
  if (!IsWindow(dialog)) {
    known_.erase(found);
    return;
  }
  Known& known = found->second;
  if (++known.visits > patience) {
    ADD_FAILURE() << "a dialog does not close";
    EndDialog(dialog, IDCANCEL);
    return;
  }
  visit_(dialog, known.visits);
  if (IsWindow(dialog)) PostMessageW(messages_, visit_message, reinterpret_cast<WPARAM>(dialog), serial);
}

}  // namespace faults_test
