#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace test_support {

/// Shows a test the messages that are sent to the windows of this thread, by a hook of that kind with that record. One
/// of a kind lives at a time.
template <int Hook, class Message>
class MessageWatch {
 public:
  using Watch = std::function<void(const Message& message)>;

  explicit MessageWatch(Watch watch)
      : watch_(std::move(watch)), hook_(SetWindowsHookExW(Hook, see, nullptr, GetCurrentThreadId())) {
    current = this;
  }
  ~MessageWatch() {
    UnhookWindowsHookEx(hook_);
    current = nullptr;
  }
  MessageWatch(const MessageWatch&) = delete;
  MessageWatch& operator=(const MessageWatch&) = delete;

 private:
  static LRESULT CALLBACK see(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && current) current->watch_(*reinterpret_cast<const Message*>(lParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }

  inline static MessageWatch* current = nullptr;

  Watch watch_;
  HHOOK hook_;
};

/// Every message before its window gets it.
using SentMessages = MessageWatch<WH_CALLWNDPROC, CWPSTRUCT>;
/// Every message after its window has handled it.
using HandledMessages = MessageWatch<WH_CALLWNDPROCRET, CWPRETSTRUCT>;

}  // namespace test_support
