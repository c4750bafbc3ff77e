#pragma once

#include <windows.h>

namespace workbench {

/// How a window is created: the arguments of `CreateWindowExW` that differ from window to window.
struct WindowParameters {
  const wchar_t* class_name = nullptr;
  const wchar_t* title = nullptr;
  DWORD style = 0;
  HMENU menu = nullptr;  ///< belongs to the window from then on
  HICON icon = nullptr;
  HCURSOR cursor = nullptr;
  HWND parent = nullptr;  ///< of a child window
  UINT id = 0;            ///< of a child window, which has no menu
};

/// Base of a window whose messages go to an object. Until the object is bound and after the last message the
/// messages get their default treatment. No exception leaves the window procedure.
class Window {
 public:
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// Null before the window is created and after it is destroyed.
  HWND handle() const noexcept { return handle_; }

 protected:
  Window() = default;
  virtual ~Window();

  /// Creates the window. Throws `_com_error` when the system refuses or when `WM_CREATE` failed.
  void create(const WindowParameters& window);

  /// Handles one message; `handle()` is valid.
  virtual LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) = 0;

  /// Called inside the catch-all of a message that failed; the message gets its default treatment.
  virtual void message_failed() noexcept = 0;

  LRESULT default_treatment(UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    return DefWindowProcW(handle_, message, wparam, lparam);
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  LRESULT treat(UINT message, WPARAM wparam, LPARAM lparam) noexcept;

  HWND handle_ = nullptr;
};

}  // namespace workbench
