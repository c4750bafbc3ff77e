#pragma once

#include <windows.h>

#include "Window.h"

namespace platform {

/// Takes over the window procedure of an existing window of this process and keeps the original one to pass messages
/// on. Bound from `SubclassWindow` until WM_NCDESTROY or the object's end, whichever comes first. An exception of a
/// handler is reported at the window procedure and the message goes to the original procedure.
class CSubclassedWindow : public CWindow {
 public:
  CSubclassedWindow() noexcept = default;
  CSubclassedWindow(const CSubclassedWindow&) = delete;
  CSubclassedWindow& operator=(const CSubclassedWindow&) = delete;

  /// Returns false when the window cannot be subclassed; nothing is changed then.
  bool SubclassWindow(HWND window) noexcept;
  /// Puts the original procedure back, unless other code has subclassed the window later.
  void UnsubclassWindow() noexcept;

  /// Handles one message: returns TRUE when it is handled, with the message's result in `result`. Map 0 is the only
  /// one.
  virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                    DWORD mapId = 0) = 0;

 protected:
  virtual ~CSubclassedWindow();

  /// Passes a message to the window's original procedure.
  LRESULT CallOriginal(UINT message, WPARAM wParam, LPARAM lParam) noexcept;

 private:
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  static CSubclassedWindow* BoundTo(HWND window) noexcept;
  void Bind(HWND window) noexcept;
  HWND Unbind() noexcept;
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  static CSubclassedWindow* first_bound_;
  CSubclassedWindow* next_bound_ = nullptr;
  WNDPROC original_ = nullptr;
};

}  // namespace platform
