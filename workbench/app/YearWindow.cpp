#include "YearWindow.h"

#include <utility>

#include "DeviceContext.h"
#include "Owned.h"

namespace workbench {

namespace {

constexpr wchar_t year_class[] = L"zdExpirationRulesYear";

}  // namespace

YearWindow::YearWindow(HWND parent, UINT id, std::function<void()> failed) : failed_(std::move(failed)) {
  create({.class_name = year_class,
          .title = L"",
          .style = WS_CHILD | WS_VISIBLE,
          .menu = nullptr,
          .icon = nullptr,
          .cursor = LoadCursorW(nullptr, IDC_ARROW),
          .parent = parent,
          .id = id});
}

void YearWindow::show(YearPicture picture) {
  picture_ = std::move(picture);
  InvalidateRect(handle(), nullptr, FALSE);
}

void YearWindow::use_resolution(int dpi) {
  dpi_ = dpi;
  InvalidateRect(handle(), nullptr, FALSE);
}

LRESULT YearWindow::handle_message(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_ERASEBKGND:
      return TRUE;
    case WM_PAINT:
      paint();
      return 0;
    case WM_SIZE:
      InvalidateRect(handle(), nullptr, FALSE);
      return 0;
    default:
      return default_treatment(message, wparam, lparam);
  }
}

void YearWindow::paint() {
  const base::ScopedPaintDc screen(handle());
  RECT client{};
  GetClientRect(handle(), &client);
  if (!screen.get() || IsRectEmpty(&client)) return;
  // The bitmap is declared first, because it must outlive the device context that it is selected into.
  const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), client.right, client.bottom));
  const base::MemoryDc memory(CreateCompatibleDC(screen.get()));
  if (!memory || !bitmap) return;
  SelectObject(memory.get(), bitmap.get());
  const SIZE area{client.right, client.bottom};
  paint_year(memory.get(), lay_out_year(area, dpi_), picture_, area);
  BitBlt(screen.get(), 0, 0, client.right, client.bottom, memory.get(), 0, 0, SRCCOPY);
}

}  // namespace workbench
