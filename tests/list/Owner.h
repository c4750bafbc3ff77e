#pragma once

#include <windows.h>

namespace list_test {

/// A window of the host over which the dialog opens.
class Owner {
 public:
  Owner()
      : window_(CreateWindowExW(0, L"Static", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 900, 800, nullptr,
                                nullptr, nullptr, nullptr)) {}
  ~Owner() { destroy(); }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  HWND get() const { return window_; }
  void destroy() {
    if (IsWindow(window_)) DestroyWindow(window_);
  }

 private:
  HWND window_;
};

}  // namespace list_test
