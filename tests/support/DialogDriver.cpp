#include "DialogDriver.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace test_support {
namespace {

constexpr UINT visit_message = WM_APP;
constexpr int most_visits = 8;
constexpr UINT first_wait_ms = USER_TIMER_MINIMUM;
constexpr UINT next_wait_ms = 200;

// A driver also works while memory fails, so none of this allocates any.

bool is_dialog(const CREATESTRUCTW& creation) {
  if (creation.style & WS_CHILD) return false;
  const auto name = reinterpret_cast<ULONG_PTR>(creation.lpszClass);
  return IS_INTRESOURCE(name) ? name == reinterpret_cast<ULONG_PTR>(WC_DIALOG)
                              : lstrcmpW(creation.lpszClass, L"#32770") == 0;
}

/// A window handle uses 32 bits; the number of the visit is in the others.
UINT_PTR timer_of(HWND dialog, int number) {
  return static_cast<UINT_PTR>(number) << 32 | static_cast<std::uint32_t>(reinterpret_cast<UINT_PTR>(dialog));
}
HWND dialog_of(UINT_PTR timer) {
  return reinterpret_cast<HWND>(static_cast<UINT_PTR>(static_cast<std::uint32_t>(timer)));
}

void fail_and_close(HWND dialog, const char* why) {
  const MessageBoxContent content = read_message_box(dialog);
  ADD_FAILURE() << why << ": " << testing::PrintToString(content.caption) << ' '
                << testing::PrintToString(content.text);
  EndDialog(dialog, IDCANCEL);
}

}  // namespace

DialogDriver::DialogDriver(Action action)
    : DialogDriver(When::shown, [act = std::move(action)](HWND dialog, int number) {
        if (number == 1) act(dialog);
      }) {}

DialogDriver::DialogDriver(When when, Visit visit)
    : visit_(std::move(visit)),
      when_(when),
      outer_(std::exchange(current_, this)),
      messages_(CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)),
      hook_(outer_ ? nullptr : SetWindowsHookExW(WH_CBT, see_window, nullptr, GetCurrentThreadId())) {
  SetWindowLongPtrW(messages_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrW(messages_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(receive));
}

DialogDriver::~DialogDriver() {
  if (hook_) UnhookWindowsHookEx(hook_);
  DestroyWindow(messages_);
  current_ = outer_;
}

LRESULT CALLBACK DialogDriver::see_window(int code, WPARAM window, LPARAM creation) {
  if (code == HCBT_CREATEWND && current_ && is_dialog(*reinterpret_cast<CBT_CREATEWNDW*>(creation)->lpcs)) {
    current_->schedule(reinterpret_cast<HWND>(window), 1);
  }
  return CallNextHookEx(nullptr, code, window, creation);
}

// The dialog's loop is the first to get the timer message.
void DialogDriver::schedule(HWND dialog, int number) const {
  if (when_ == When::created) {
    PostMessageW(messages_, visit_message, reinterpret_cast<WPARAM>(dialog), number);
  } else {
    SetTimer(messages_, timer_of(dialog, number), number == 1 ? first_wait_ms : next_wait_ms, nullptr);
  }
}

LRESULT CALLBACK DialogDriver::receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* driver = reinterpret_cast<DialogDriver*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  switch (message) {
    case visit_message:
      driver->call_on(reinterpret_cast<HWND>(wParam), static_cast<int>(lParam));
      return 0;
    case WM_TIMER:
      // A dialog that is not on the screen yet, or that waits for another one, is looked at again.
      if (IsWindow(dialog_of(wParam)) && (!IsWindowVisible(dialog_of(wParam)) || !IsWindowEnabled(dialog_of(wParam)))) {
        return 0;
      }
      KillTimer(window, wParam);
      driver->call_on(dialog_of(wParam), static_cast<int>(wParam >> 32));
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

void DialogDriver::call_on(HWND dialog, int number) {
  if (!IsWindow(dialog)) return;
  if (number > most_visits) {
    fail_and_close(dialog, "a dialog does not close");
    return;
  }
  if (number == 1) ++dialogs_;
  HWND messages = messages_;
  visit_(dialog, number);
  if (IsWindow(messages) && IsWindow(dialog)) schedule(dialog, number + 1);
}

void with_dialog(const std::function<void()>& open, const DialogDriver::Action& act) {
  bool opened = false;
  const DialogDriver driver([&](HWND dialog) {
    if (std::exchange(opened, true)) {
      fail_and_close(dialog, "an unexpected dialog opened");
      return;
    }
    act(dialog);
    if (IsWindowVisible(dialog)) fail_and_close(dialog, "a dialog was left open");
  });
  open();
  EXPECT_TRUE(opened) << "no dialog was opened";
}

MessageBoxContent with_message_box(const std::function<void()>& open, int button) {
  MessageBoxContent content;
  with_dialog(open, [&](HWND box) {
    content = read_message_box(box);
    if (button) {
      click(box, button);
    } else {
      close_message_box(box);
    }
  });
  return content;
}

}  // namespace test_support
