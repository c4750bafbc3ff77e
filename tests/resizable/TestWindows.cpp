#include "TestWindows.h"

#include "ModulePath.h"
#include "Owned.h"

namespace resizable_test {

HWND make_popup(DWORD more_style) {
  return CreateWindowExW(0, L"#32770", L"", WS_POPUP | more_style, 100, 100, 300, 200, nullptr, nullptr,
                         base::module_instance(), nullptr);
}

HWND make_child(HWND parent, const wchar_t* window_class, const RECT& rect, DWORD style) {
  return CreateWindowExW(0, window_class, L"", WS_CHILD | WS_VISIBLE | style, rect.left, rect.top,
                         rect.right - rect.left, rect.bottom - rect.top, parent, nullptr, base::module_instance(),
                         nullptr);
}

void resize(HWND window, LONG width, LONG height) {
  SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

CSize client_size(HWND window) {
  RECT rect{};
  GetClientRect(window, &rect);
  return {rect.right, rect.bottom};
}

bool is_cut_to_triangle(HWND window) {
  const RECT rect = rect_of(window);
  const LONG width = rect.right - rect.left;
  const LONG height = rect.bottom - rect.top;
  const POINT corners[] = {{0, height}, {width, height}, {width, 0}};
  const base::Region triangle(CreatePolygonRgn(corners, 3, WINDING));
  const base::Region region(CreateRectRgn(0, 0, 0, 0));
  return GetWindowRgn(window, region.get()) != ERROR && EqualRgn(region.get(), triangle.get());
}

}  // namespace resizable_test
