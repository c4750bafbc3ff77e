#pragma once

#include <windows.h>

namespace module_test {

/// A window of the host that is active when a dialog opens, and then its owner.
class HostWindow {
 public:
  HostWindow()
      : window_(CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                nullptr, nullptr, nullptr)) {
    SetActiveWindow(window_);
  }
  ~HostWindow() { destroy(); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  HWND get() const { return window_; }
  void destroy() {
    if (IsWindow(window_)) DestroyWindow(window_);
  }

 private:
  HWND window_;
};

}  // namespace module_test
