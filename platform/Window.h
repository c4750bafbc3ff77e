#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace platform {

/// Refers to a window that it does not own. Each operation first asserts that the window exists and then calls the
/// system even so: a destroyed window gives what the system returns for one.
class CWindow {
 public:
  CWindow() noexcept = default;
  explicit CWindow(HWND window) noexcept : m_hWnd(window) {}

  void Attach(HWND window) noexcept { m_hWnd = window; }
  HWND Detach() noexcept;

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const noexcept;
  std::wstring GetText() const;
  void SetText(const wchar_t* text) const noexcept;
  void Enable(bool enable) const noexcept;
  void SetFocus() const noexcept;
  HWND GetItem(int id) const noexcept;
  RECT GetClientRect() const noexcept;
  RECT GetWindowRect() const noexcept;
  DWORD GetStyle() const noexcept;
  DWORD GetExStyle() const noexcept;

  HWND m_hWnd = nullptr;
};

}  // namespace platform
