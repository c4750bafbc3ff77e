#pragma once

#include <windows.h>

#include "Owned.h"
#include "Report.h"
#include "ResizableGeometry.h"
#include "SubclassedWindow.h"

/// The grip in the lower right corner of a resizable dialog: a scroll bar of the size grip kind, triangular or whole,
/// painted by the system or masked so that the dialog shows through. The dialog owns the window.
class CSizeGrip : public platform::CSubclassedWindow {
 public:
  CSizeGrip() noexcept;

  /// Creates the hidden grip at the top left of the dialog's client area, cut to its lower right half. Returns false
  /// when it cannot be created.
  bool Create(HWND dialog) noexcept;

  /// Width and height of the grip: those of the system's scroll bars, in pixels.
  SIZE Size() const noexcept { return size_; }

  /// Cuts the window to its lower right half, so that clicks on the other half reach what lies behind, or shows it
  /// whole.
  void MakeTriangular(BOOL bTriangular) noexcept;

  /// Paints the grip with the colour of its top left pixel left out, or as the system does. Stays with the system's
  /// painting when the bitmaps cannot be created.
  void EnableMaskedPaint(BOOL bMasked) noexcept;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override;

 private:
  void ReadSize() noexcept;
  void ApplyTriangle(SIZE size, BOOL redraw) noexcept;
  bool MakeBitmaps() noexcept;
  void OnSettingChange() noexcept;
  void OnPaint(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void PaintMasked(HDC target) noexcept;

  SIZE size_ = {};
  BOOL triangular_ = FALSE;
  BOOL transparent_ = FALSE;
  base::MemoryDc colour_dc_;
  base::MemoryDc mask_dc_;
  base::Bitmap colour_bitmap_;
  base::Bitmap mask_bitmap_;
};

/// Mix-in of a dialog class `T`: owns the grip, counts the requests to show it and keeps it in the corner, behind every
/// control. UI thread only.
template <class T>
class CResizableGrip {
 public:
  /// Increments the show count unless `dwMask` is already set in `*pStatus`.
  void ShowSizeGrip(DWORD* pStatus, DWORD dwMask) noexcept {
    if (!SnagtrapUtil::expect(pStatus != nullptr, L"pStatus != 0", ZD_LOCATION)) return;
    if (*pStatus & dwMask) return;
    ++show_count_;
    *pStatus |= dwMask;
  }

  /// Decrements the show count and clears `dwMask` if it is set in `*pStatus`.
  void HideSizeGrip(DWORD* pStatus, DWORD dwMask) noexcept {
    if (!SnagtrapUtil::expect(pStatus != nullptr, L"pStatus != 0", ZD_LOCATION)) return;
    if (!(*pStatus & dwMask)) return;
    --show_count_;
    *pStatus &= ~dwMask;
  }

  /// Puts the grip into the corner and shows it while the show count is positive.
  void UpdateSizeGrip() noexcept {
    const HWND dialog = static_cast<T*>(this)->m_hWnd;
    SnagtrapUtil::expect(::IsWindow(dialog) != FALSE, L"pT->IsWindow()", ZD_LOCATION);
    RECT client = {};
    ::GetClientRect(dialog, &client);
    if (!::IsWindow(grip_.m_hWnd)) return;
    const POINT position = resizable::grip_position(client, grip_.Size());
    const UINT visibility = show_count_ >= 1 ? SWP_SHOWWINDOW : SWP_HIDEWINDOW;
    ::SetWindowPos(grip_.m_hWnd, HWND_BOTTOM, position.x, position.y, 0, 0,
                   SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER | visibility);
  }

  CSizeGrip& SizeGrip() noexcept { return grip_; }
  int ShowCount() const noexcept { return show_count_; }
  void SetShowCount(int count) noexcept { show_count_ = count; }

 protected:
  CResizableGrip() noexcept = default;
  ~CResizableGrip() = default;

 private:
  CSizeGrip grip_;
  int show_count_ = 0;
};
