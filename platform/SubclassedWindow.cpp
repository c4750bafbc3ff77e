#include "SubclassedWindow.h"

#include "Report.h"
#include "ScopedLock.h"

namespace platform {

namespace {

// Outlives the object when other code has subclassed the window later: this procedure is then still called and must
// know where to pass messages on.
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

/// Guards the list of bound objects. It is short, and searching it costs a message far less than a window property.
SRWLOCK bound_lock = SRWLOCK_INIT;

}  // namespace

CSubclassedWindow* CSubclassedWindow::first_bound_ = nullptr;

CSubclassedWindow::~CSubclassedWindow() { UnsubclassWindow(); }

CSubclassedWindow* CSubclassedWindow::BoundTo(HWND window) noexcept {
  const base::ScopedSharedLock lock(bound_lock);
  CSubclassedWindow* object = first_bound_;
  while (object && object->m_hWnd != window) object = object->next_bound_;
  return object;
}

void CSubclassedWindow::Bind(HWND window) noexcept {
  const base::ScopedExclusiveLock lock(bound_lock);
  m_hWnd = window;
  next_bound_ = first_bound_;
  first_bound_ = this;
}

HWND CSubclassedWindow::Unbind() noexcept {
  const base::ScopedExclusiveLock lock(bound_lock);
  CSubclassedWindow** link = &first_bound_;
  while (*link && *link != this) link = &(*link)->next_bound_;
  if (*link) *link = next_bound_;
  return Detach();
}

bool CSubclassedWindow::SubclassWindow(HWND window) noexcept {
  if (m_hWnd || !IsWindow(window) || GetPropW(window, original_property)) return false;
  original_ = current_procedure(window);
  if (!SetPropW(window, original_property, reinterpret_cast<HANDLE>(original_))) return false;
  Bind(window);
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CSubclassedWindow::WindowProcedure));
  return true;
}

void CSubclassedWindow::UnsubclassWindow() noexcept {
  HWND window = Unbind();
  if (!window) return;
  if (current_procedure(window) != &CSubclassedWindow::WindowProcedure) return;
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_));
  RemovePropW(window, original_property);
}

LRESULT CSubclassedWindow::CallOriginal(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return CallWindowProcW(original_, m_hWnd, message, wParam, lParam);
}

LRESULT CALLBACK CSubclassedWindow::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  CSubclassedWindow* object = BoundTo(window);
  if (message == WM_NCDESTROY) {
    const WNDPROC original = original_procedure(window);
    if (object) object->UnsubclassWindow();
    RemovePropW(window, original_property);
    return CallWindowProcW(original, window, message, wParam, lParam);
  }
  return object ? object->Handle(window, message, wParam, lParam) : pass_on(window, message, wParam, lParam);
}

LRESULT CSubclassedWindow::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  // The handler may destroy the object.
  const WNDPROC original = original_;
  try {
    LRESULT result = 0;
    if (ProcessWindowMessage(window, message, wParam, lParam, result)) return result;
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION);
  }
  return CallWindowProcW(original, window, message, wParam, lParam);
}

}  // namespace platform
