#include "Window.h"

#include "Hresult.h"
#include "ModulePath.h"

namespace workbench {

namespace {

Window* bound_object(HWND window) noexcept {
  return reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

void bind_object(HWND window, Window* object) noexcept {
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
}

}  // namespace

Window::~Window() {
  if (handle_) {
    bind_object(handle_, nullptr);
    DestroyWindow(handle_);
  }
}

void Window::create(const WindowParameters& window) {
  WNDCLASSEXW window_class{};
  window_class.cbSize = sizeof(window_class);
  window_class.lpfnWndProc = &procedure;
  window_class.hInstance = base::module_instance();
  window_class.hIcon = window.icon;
  window_class.hCursor = window.cursor;
  window_class.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
  window_class.lpszClassName = window.class_name;
  if (!RegisterClassExW(&window_class) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) base::throw_last_failure();
  HMENU menu_or_id = window.parent ? reinterpret_cast<HMENU>(static_cast<UINT_PTR>(window.id)) : window.menu;
  const int size = window.parent ? 0 : CW_USEDEFAULT;
  if (!CreateWindowExW(0, window.class_name, window.title, window.style, size, size, size, size, window.parent,
                       menu_or_id, window_class.hInstance, this))
    base::throw_last_failure();
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_NCCREATE) {
    auto* object = static_cast<Window*>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
    object->handle_ = window;
    bind_object(window, object);
  }
  Window* object = bound_object(window);
  if (!object) return DefWindowProcW(window, message, wparam, lparam);
  const LRESULT result = object->treat(message, wparam, lparam);
  if (message == WM_NCDESTROY) {
    bind_object(window, nullptr);
    object->handle_ = nullptr;
  }
  return result;
}

LRESULT Window::treat(UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  try {
    return handle_message(message, wparam, lparam);
  } catch (...) {
    message_failed();
  }
  constexpr LRESULT creation_failed = -1;
  return message == WM_CREATE ? creation_failed : default_treatment(message, wparam, lparam);
}

}  // namespace workbench
