#pragma once

#include <windows.h>

namespace base {

/// The DC of a window's client area, for a scope.
class ScopedClientDc {
 public:
  explicit ScopedClientDc(HWND window) noexcept : window_(window), dc_(GetDC(window)) {}
  ~ScopedClientDc() {
    if (dc_) ReleaseDC(window_, dc_);
  }
  ScopedClientDc(const ScopedClientDc&) = delete;
  ScopedClientDc& operator=(const ScopedClientDc&) = delete;

  /// Null when the system gives none.
  HDC get() const noexcept { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

/// The DC for painting what is invalid of a window, for a scope inside WM_PAINT.
class ScopedPaintDc {
 public:
  explicit ScopedPaintDc(HWND window) noexcept : window_(window), dc_(BeginPaint(window, &paint_)) {}
  ~ScopedPaintDc() { EndPaint(window_, &paint_); }
  ScopedPaintDc(const ScopedPaintDc&) = delete;
  ScopedPaintDc& operator=(const ScopedPaintDc&) = delete;

  HDC get() const noexcept { return dc_; }

 private:
  HWND window_;
  PAINTSTRUCT paint_ = {};
  HDC dc_;
};

/// Selects an object into a DC for a scope; the one that was selected before comes back.
class ScopedSelectObject {
 public:
  ScopedSelectObject(HDC dc, HGDIOBJ object) noexcept : dc_(dc), previous_(SelectObject(dc, object)) {}
  ~ScopedSelectObject() {
    if (previous_) SelectObject(dc_, previous_);
  }
  /// Whether the system took the object.
  explicit operator bool() const noexcept { return previous_ != nullptr; }

  ScopedSelectObject(const ScopedSelectObject&) = delete;
  ScopedSelectObject& operator=(const ScopedSelectObject&) = delete;

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

}  // namespace base
