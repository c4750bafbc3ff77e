#pragma once

#include <windows.h>

#include "Dialog.h"
#include "Report.h"
#include "ResizableGrip.h"
#include "ResizableLayout.h"
#include "ResizableMinMax.h"
#include "ResizableState.h"

/// Turns a dialog class `T` into a resizable one, modal or modeless, top-level or child. `T` chains its messages after
/// `ProcessWindowMessage` of this class; by then every child is anchored at the top left, and the `T` that wants a
/// child to move or stretch anchors it again in its WM_INITDIALOG. The dialog cannot be dragged below its template's
/// size.
template <class T, class TBase = platform::CWindow, class TDialogBase = platform::CDialogImpl<T, TBase>>
class CResizableDialogImplT : public TDialogBase,
                              public CResizableGrip<T>,
                              public CResizableMinMax<T>,
                              public CResizableState<T>,
                              public CResizableLayout<T> {
 public:
  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override {
    if (!SnagtrapUtil::expect(mapId == 0, ZD_LOCATION_AT(48))) return FALSE;
    if (message == WM_ERASEBKGND) return OnEraseBackground(reinterpret_cast<HDC>(wParam));
    EndErase();
    switch (message) {
      case WM_SIZE:
        return OnSize(wParam);
      case WM_INITDIALOG:
        return OnInitDialog(result);
      case WM_GETMINMAXINFO:
        return OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam), result);
      case WM_DESTROY:
        return OnDestroy();
      case WM_NCCALCSIZE:
        return wParam ? OnNcCalcSize(reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam), result) : FALSE;
      case WM_WINDOWPOSCHANGING:
        return this->IsRestoring() ? OnRestoring(window, wParam, lParam, result) : FALSE;
      case WM_SETTINGCHANGE:
        return OnSettingChange(wParam, lParam);
      default:
        return FALSE;
    }
  }

 protected:
  CResizableDialogImplT() = default;
  ~CResizableDialogImplT() override = default;

  BOOL m_bSavePlacement = FALSE;  ///< whether the placement is stored at WM_DESTROY; `T` sets it
  BOOL m_bRectOnly = FALSE;       ///< whether only the normal rectangle is stored then; `T` sets it

 private:
  static constexpr DWORD maximised_bit = 1;

  /// The system erases, but only where no child paints. A second erase during the first goes unclipped.
  BOOL OnEraseBackground(HDC dc) {
    if (!erasing_) {
      this->ApplyEraseClipping(dc, FALSE);
      erasing_ = true;
    }
    return FALSE;
  }

  void EndErase() noexcept {
    if (!erasing_) return;
    this->ForgetClipState();
    erasing_ = false;
  }

  BOOL OnSize(WPARAM type) {
    if (type == SIZE_MAXHIDE || type == SIZE_MAXSHOW) return FALSE;
    if (type == SIZE_MAXIMIZED) {
      this->HideSizeGrip(&grip_status_, maximised_bit);
    } else {
      this->ShowSizeGrip(&grip_status_, maximised_bit);
    }
    this->UpdateSizeGrip();
    this->ArrangeLayout();
    return FALSE;
  }

  /// Handled only when it fails: otherwise `T` has its own initialisation to do.
  BOOL OnInitDialog(LRESULT& result) {
    resizable::modify_style(this->m_hWnd, GWL_EXSTYLE, 0, WS_EX_DLGMODALFRAME);
    const DWORD style = this->GetStyle();
    result = FALSE;
    if (!this->SizeGrip().Create(this->m_hWnd)) return TRUE;
    this->SizeGrip().MakeTriangular(TRUE);
    this->SizeGrip().EnableMaskedPaint(FALSE);
    this->SetShowCount(style & WS_CHILD ? 0 : 1);
    grip_status_ = maximised_bit;
    this->UpdateSizeGrip();
    AnchorChildren();
    // Before the sizing border, which would make the smallest window grow by its width.
    this->SetMinTrackingSize(resizable::size_of(this->GetWindowRect()));
    this->AddSizingBorder();
    result = TRUE;
    return FALSE;
  }

  /// A child that is asked for its properties may destroy itself and others or change their order.
  void AnchorChildren() {
    for (const HWND child : resizable::children_of(this->m_hWnd)) {
      if (child != this->SizeGrip().m_hWnd && ::IsWindow(child)) this->AddAnchor(child, TOP_LEFT);
    }
  }

  BOOL OnGetMinMaxInfo(MINMAXINFO* info, LRESULT& result) noexcept {
    if (info) this->FillMinMaxInfo(*info);
    result = 0;
    return TRUE;
  }

  BOOL OnDestroy() noexcept {
    if (m_bSavePlacement) this->StorePlacement(m_bRectOnly);
    this->ClearAnchors();
    return FALSE;
  }

  BOOL OnNcCalcSize(NCCALCSIZE_PARAMS* params, LRESULT& result) noexcept {
    result = 0;
    this->AdjustNcCalcSize(FALSE, params, &result);
    this->AdjustNcCalcSize(TRUE, params, &result);
    return FALSE;
  }

  /// SetWindowPos enforces the minimum size too; heights up to one caption below it are exempt.
  BOOL OnRestoring(HWND window, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept {
    auto& position = *reinterpret_cast<WINDOWPOS*>(lParam);
    const int height = position.cy;
    result = ::DefWindowProcW(window, WM_WINDOWPOSCHANGING, wParam, lParam);
    const LONG caption = ::GetSystemMetrics(SM_CYCAPTION);
    if (resizable::is_opening_height(height, this->MinTrackingSize().cy, caption)) position.cy = height;
    return TRUE;
  }

  /// The system sends this to top-level windows only, and the grip has the size of the system's scroll bars.
  BOOL OnSettingChange(WPARAM wParam, LPARAM lParam) noexcept {
    if (::IsWindow(this->SizeGrip().m_hWnd)) this->SizeGrip().Send(WM_SETTINGCHANGE, wParam, lParam);
    return FALSE;
  }

  bool erasing_ = false;
  DWORD grip_status_ = maximised_bit;
};

/// A resizable dialog with the plain window class and the standard dialog implementation.
template <class T>
class CResizableDialogImpl : public CResizableDialogImplT<T> {};
