#include "SubclassedWindow.h"

#include "Report.h"

namespace platform {

namespace {

// The procedure's property outlives the object when other code has subclassed the window later: this procedure is then
// still called and must know where to pass messages on.
constexpr wchar_t object_property[] = L"zdExpirationRules.Window";
constexpr wchar_t original_property[] = L"zdExpirationRules.WindowProcedure";

WNDPROC current_procedure(HWND window) noexcept {
  return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
}

WNDPROC original_procedure(HWND window) noexcept {
  const auto original = reinterpret_cast<WNDPROC>(reinterpret_cast<void*>(GetPropW(window, original_property)));
  return original ? original : &DefWindowProcW;
}

LRESULT pass_on(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return CallWindowProcW(original_procedure(window), window, message, wParam, lParam);
}

}  // namespace

CSubclassedWindow::~CSubclassedWindow() { UnsubclassWindow(); }

bool CSubclassedWindow::SubclassWindow(HWND window) noexcept {
  if (m_hWnd || !IsWindow(window) || GetPropW(window, original_property)) return false;
  const WNDPROC original = current_procedure(window);
  if (!SetPropW(window, original_property, reinterpret_cast<HANDLE>(original))) return false;
  if (!SetPropW(window, object_property, this)) {
    RemovePropW(window, original_property);
    return false;
  }
  m_hWnd = window;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CSubclassedWindow::WindowProcedure));
  return true;
}

void CSubclassedWindow::UnsubclassWindow() noexcept {
  HWND window = Detach();
  if (!window) return;
  RemovePropW(window, object_property);
  if (current_procedure(window) != &CSubclassedWindow::WindowProcedure) return;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_procedure(window)));
  RemovePropW(window, original_property);
}

LRESULT CSubclassedWindow::CallOriginal(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return pass_on(m_hWnd, message, wParam, lParam);
}

LRESULT CALLBACK CSubclassedWindow::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* object = static_cast<CSubclassedWindow*>(GetPropW(window, object_property));
  if (message == WM_NCDESTROY) {
    const WNDPROC original = original_procedure(window);
    if (object) object->UnsubclassWindow();
    RemovePropW(window, original_property);
    return CallWindowProcW(original, window, message, wParam, lParam);
  }
  return object ? object->Handle(window, message, wParam, lParam) : pass_on(window, message, wParam, lParam);
}

LRESULT CSubclassedWindow::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  try {
    LRESULT result = 0;
    if (ProcessWindowMessage(window, message, wParam, lParam, result)) return result;
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION);
  }
  return pass_on(window, message, wParam, lParam);
}

}  // namespace platform
