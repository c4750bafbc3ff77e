#pragma once

#include <windows.h>

#include <cstddef>

#include "Progress.h"

namespace workbench {

/// Shows the progress of long work on this thread once it has taken a second, and lets the user cancel it. Meanwhile
/// the owner takes no input, and all other messages are dispatched, so the work is none that nothing may interrupt,
/// such as a call of a store: that waits with a `WaitBox`.
class ProgressDialog {
 public:
  /// How long work takes before it is shown.
  inline static ULONGLONG delay_ms = 1000;

  explicit ProgressDialog(HWND owner) noexcept : owner_(owner) {}
  ~ProgressDialog();
  ProgressDialog(const ProgressDialog&) = delete;
  ProgressDialog& operator=(const ProgressDialog&) = delete;

  /// Called by the work often, with how much of it is done. False: the user cancelled it.
  bool go_on(std::size_t done, std::size_t total);

  /// The same for a work that takes a function. It must not outlive this object.
  schedule::Progress progress() {
    return [this](std::size_t done, std::size_t total) { return go_on(done, total); };
  }

 private:
  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  void show();
  void dispatch_messages();

  HWND owner_;
  HWND window_ = nullptr;
  bool owner_was_enabled_ = false;
  ULONGLONG began_ = GetTickCount64();
  ULONGLONG shown_ = 0;  ///< when the bar was moved last
  bool cancelled_ = false;
};

}  // namespace workbench
