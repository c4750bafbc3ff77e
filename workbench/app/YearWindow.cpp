#include "YearWindow.h"

#include <utility>

#include "Owned.h"

namespace workbench {

namespace {

constexpr wchar_t year_class[] = L"zdExpirationRulesYear";

/// Paints a window, as long as it lives.
class ScopedPaint {
 public:
  explicit ScopedPaint(HWND window) noexcept : window_(window), dc_(BeginPaint(window, &paint_)) {}
  ~ScopedPaint() { EndPaint(window_, &paint_); }
  ScopedPaint(const ScopedPaint&) = delete;
  ScopedPaint& operator=(const ScopedPaint&) = delete;

  HDC dc() const noexcept { return dc_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  HDC dc_;
};

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
  const ScopedPaint paint(handle());
  RECT client{};
  GetClientRect(handle(), &client);
  if (!paint.dc() || IsRectEmpty(&client)) return;
  // The bitmap is declared first, because it must outlive the device context that it is selected into.
  const base::Bitmap bitmap(CreateCompatibleBitmap(paint.dc(), client.right, client.bottom));
  const base::MemoryDc memory(CreateCompatibleDC(paint.dc()));
  if (!memory || !bitmap) return;
  SelectObject(memory.get(), bitmap.get());
  const SIZE area{client.right, client.bottom};
  paint_year(memory.get(), lay_out_year(area, dpi_), picture_, area);
  BitBlt(paint.dc(), 0, 0, client.right, client.bottom, memory.get(), 0, 0, SRCCOPY);
}

}  // namespace workbench
