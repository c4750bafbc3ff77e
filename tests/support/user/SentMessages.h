#pragma once

#include <windows.h>

#include <functional>

namespace test_support {

/// Shows a test every message that is sent to a window of this thread, before the window gets it. One lives at a time.
class SentMessages {
 public:
  using Watch = std::function<void(const CWPSTRUCT& message)>;

  explicit SentMessages(Watch watch)
      : watch_(std::move(watch)), hook_(SetWindowsHookExW(WH_CALLWNDPROC, see, nullptr, GetCurrentThreadId())) {
    current = this;
  }
  ~SentMessages() {
    UnhookWindowsHookEx(hook_);
    current = nullptr;
  }
  SentMessages(const SentMessages&) = delete;
  SentMessages& operator=(const SentMessages&) = delete;

 private:
  static LRESULT CALLBACK see(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && current) current->watch_(*reinterpret_cast<const CWPSTRUCT*>(lParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }

  inline static SentMessages* current = nullptr;

  Watch watch_;
  HHOOK hook_;
};

}  // namespace test_support
