#include "Window.h"

#include "Report.h"
#include "WindowText.h"

namespace platform {

namespace {

void expect_window(HWND window, const SnagtrapUtil::SourceLocation& location) noexcept {
  SnagtrapUtil::expect(IsWindow(window) != FALSE, L"::IsWindow(m_hWnd)", location);
}

}  // namespace

HWND CWindow::Detach() noexcept {
  HWND window = m_hWnd;
  m_hWnd = nullptr;
  return window;
}

LRESULT CWindow::Send(UINT message, WPARAM wParam, LPARAM lParam) const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  return SendMessageW(m_hWnd, message, wParam, lParam);
}

std::wstring CWindow::GetText() const {
  expect_window(m_hWnd, ZD_LOCATION);
  return base::window_text(m_hWnd);
}

void CWindow::SetText(const wchar_t* text) const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  SetWindowTextW(m_hWnd, text);
}

void CWindow::Enable(bool enable) const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  // The system takes its time even for what changes nothing.
  if ((IsWindowEnabled(m_hWnd) != FALSE) != enable) EnableWindow(m_hWnd, enable ? TRUE : FALSE);
}

void CWindow::SetFocus() const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  ::SetFocus(m_hWnd);
}

HWND CWindow::GetItem(int id) const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  return GetDlgItem(m_hWnd, id);
}

RECT CWindow::GetClientRect() const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  RECT rect = {};
  ::GetClientRect(m_hWnd, &rect);
  return rect;
}

RECT CWindow::GetWindowRect() const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  RECT rect = {};
  ::GetWindowRect(m_hWnd, &rect);
  return rect;
}

DWORD CWindow::GetStyle() const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  return static_cast<DWORD>(GetWindowLongPtrW(m_hWnd, GWL_STYLE));
}

DWORD CWindow::GetExStyle() const noexcept {
  expect_window(m_hWnd, ZD_LOCATION);
  return static_cast<DWORD>(GetWindowLongPtrW(m_hWnd, GWL_EXSTYLE));
}

}  // namespace platform
