#include "ResizableGrip.h"

#include "DeviceContext.h"
#include "ModulePath.h"

namespace {

constexpr DWORD grip_style = WS_CHILD | WS_CLIPSIBLINGS | SBS_SIZEGRIP;
constexpr DWORD copy_inverted_and = 0x220326;  // destination AND NOT source

base::Bitmap monochrome_bitmap(SIZE size) noexcept {
  return base::Bitmap(CreateBitmap(size.cx, size.cy, 1, 1, nullptr));
}

RECT rect_in_parent(HWND window, RECT screen_rect) noexcept {
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&screen_rect), 2);
  return screen_rect;
}

}  // namespace

CSizeGrip::CSizeGrip() noexcept { ReadSize(); }

bool CSizeGrip::Create(HWND dialog) noexcept {
  HWND window = CreateWindowExW(0, L"SCROLLBAR", nullptr, grip_style, 0, 0, size_.cx, size_.cy, dialog, nullptr,
                                base::module_instance(), nullptr);
  if (!window) return false;
  if (!SubclassWindow(window)) {
    DestroyWindow(window);
    return false;
  }
  ApplyTriangle(size_, FALSE);
  return true;
}

void CSizeGrip::MakeTriangular(BOOL bTriangular) noexcept {
  triangular_ = bTriangular;
  const BOOL redraw = IsWindowVisible(m_hWnd);
  if (bTriangular) {
    ApplyTriangle(resizable::size_of(GetWindowRect()), redraw);
  } else {
    SetWindowRgn(m_hWnd, nullptr, redraw);
  }
}

void CSizeGrip::EnableMaskedPaint(BOOL bMasked) noexcept {
  transparent_ = bMasked && MakeBitmaps();
  if (transparent_) return;
  colour_dc_.reset();
  mask_dc_.reset();
  colour_bitmap_.reset();
  mask_bitmap_.reset();
}

BOOL CSizeGrip::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                     DWORD mapId) {
  if (!SnagtrapUtil::expect(mapId == 0, ZD_LOCATION_IN("ResizableGrip.h", 117))) return FALSE;
  result = 0;
  switch (message) {
    case WM_SETFOCUS:
      return TRUE;
    case WM_GETDLGCODE:
      result = DLGC_STATIC;
      return TRUE;
    case WM_SETTINGCHANGE:
      OnSettingChange();
      return TRUE;
    case WM_DESTROY:
      EnableMaskedPaint(FALSE);
      return FALSE;
    case WM_PAINT:
      OnPaint(message, wParam, lParam);
      return TRUE;
    case WM_PRINTCLIENT:
      // The flag is taken the other way round on purpose: with it even a hidden grip is painted.
      if ((lParam & PRF_CHECKVISIBLE) || IsWindowVisible(window)) OnPaint(message, wParam, lParam);
      return TRUE;
    default:
      return FALSE;
  }
}

void CSizeGrip::ReadSize() noexcept { size_ = {GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL)}; }

void CSizeGrip::ApplyTriangle(SIZE size, BOOL redraw) noexcept {
  const auto corners = resizable::grip_triangle(size);
  base::Region triangle(CreatePolygonRgn(corners.data(), static_cast<int>(corners.size()), WINDING));
  // The window owns the region from here on, unless it does not take it.
  if (SetWindowRgn(m_hWnd, triangle.get(), redraw)) triangle.detach();
}

bool CSizeGrip::MakeBitmaps() noexcept {
  const base::ScopedClientDc dc(m_hWnd);
  if (!colour_dc_) colour_dc_.reset(CreateCompatibleDC(dc.get()));
  if (!mask_dc_) mask_dc_.reset(CreateCompatibleDC(dc.get()));
  colour_bitmap_.reset(CreateCompatibleBitmap(dc.get(), size_.cx, size_.cy));
  mask_bitmap_ = monochrome_bitmap(size_);
  return colour_dc_ && mask_dc_ && colour_bitmap_ && mask_bitmap_;
}

void CSizeGrip::OnSettingChange() noexcept {
  const SIZE old_size = size_;
  ReadSize();
  if (transparent_) EnableMaskedPaint(TRUE);
  const RECT rect = rect_in_parent(m_hWnd, resizable::resized_grip(GetWindowRect(), old_size, size_));
  const CSize size = resizable::size_of(rect);
  MoveWindow(m_hWnd, rect.left, rect.top, size.cx, size.cy, TRUE);
  // Last, because it is cut from the window as large as it is now.
  if (triangular_) MakeTriangular(TRUE);
}

void CSizeGrip::OnPaint(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (!transparent_) {
    CallOriginal(message, wParam, lParam);
  } else if (wParam) {
    PaintMasked(reinterpret_cast<HDC>(wParam));
  } else {
    const base::ScopedPaintDc dc(m_hWnd);
    PaintMasked(dc.get());
  }
}

void CSizeGrip::PaintMasked(HDC target) noexcept {
  HDC colour = colour_dc_.get();
  HDC mask = mask_dc_.get();
  const base::ScopedSelectObject colour_bitmap(colour, colour_bitmap_.get());
  const base::ScopedSelectObject mask_bitmap(mask, mask_bitmap_.get());
  if (!target || !colour_bitmap || !mask_bitmap) return;
  CallOriginal(WM_PAINT, reinterpret_cast<WPARAM>(colour), 0);
  SetBkColor(colour, GetPixel(colour, 0, 0));
  BitBlt(mask, 0, 0, size_.cx, size_.cy, colour, 0, 0, SRCCOPY);
  BitBlt(colour, 0, 0, size_.cx, size_.cy, mask, 0, 0, copy_inverted_and);
  BitBlt(target, 0, 0, size_.cx, size_.cy, mask, 0, 0, SRCAND);
  BitBlt(target, 0, 0, size_.cx, size_.cy, colour, 0, 0, SRCPAINT);
}
