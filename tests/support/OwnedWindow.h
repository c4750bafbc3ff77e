#pragma once

#include <windows.h>

namespace test_support {

/// A window of a test, destroyed at the end of the test unless it was destroyed before.
class OwnedWindow {
 public:
  explicit OwnedWindow(HWND window) : window_(window) {}
  ~OwnedWindow() { destroy(); }
  OwnedWindow(const OwnedWindow&) = delete;
  OwnedWindow& operator=(const OwnedWindow&) = delete;

  HWND get() const { return window_; }
  void destroy() {
    if (IsWindow(window_)) DestroyWindow(window_);
  }

 private:
  HWND window_;
};

/// A window of the host that is active when a dialog opens, and then its owner.
class HostWindow : public OwnedWindow {
 public:
  HostWindow()
      : OwnedWindow(CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 900, 800, nullptr,
                                    nullptr, nullptr, nullptr)) {
    SetActiveWindow(get());
  }
};

}  // namespace test_support
