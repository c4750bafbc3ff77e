#pragma once

#include <windows.h>

#include "ChildLayout.h"
#include "EraseClipping.h"
#include "Report.h"
#include "ResizableFrame.h"
#include "WindowMoves.h"

/// Mix-in of a dialog class `T`: every child follows the dialog's client area by an anchor for its top left and one for
/// its bottom right corner. Margins are measured once, when the anchor is added. UI thread only.
template <class T>
class CResizableLayout {
 public:
  CResizableLayout() noexcept : saved_clip_region_(CreateRectRgn(0, 0, 0, 0)) {
    RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT();
  }
  CResizableLayout(const CResizableLayout&) = delete;
  CResizableLayout& operator=(const CResizableLayout&) = delete;

  /// Records or replaces the layout of a child. Without a second anchor the child keeps its size. What is no window or
  /// no child is reported as an assertion and recorded all the same. Throws `std::bad_alloc`.
  void AddAnchor(HWND hWnd, CSize anchorTL, CSize anchorBR = NOANCHOR) {
    SnagtrapUtil::expect(::IsWindow(hWnd) != FALSE, ZD_LOCATION_AT(271));
    SnagtrapUtil::expect(::IsChild(dialog(), hWnd) != FALSE, ZD_LOCATION_AT(273));
    SnagtrapUtil::expect(anchorTL != NOANCHOR, ZD_LOCATION_AT(275));
    anchored_.put(resizable::measured_child(dialog(), hWnd, anchorTL, anchorBR));
  }

  /// Records a child whose layout `T` gives at each use, through `ArrangeLayoutCallback`. `callbackId` is `T`'s own and
  /// not 0. Throws `std::bad_alloc`.
  void AddAnchorCallback(HWND hWnd, UINT callbackId) {
    SnagtrapUtil::expect(callbackId != 0, L"callbackId != 0", ZD_LOCATION);
    LayoutInfo info = resizable::measured_child(dialog(), hWnd, TOP_LEFT, TOP_LEFT);
    info.callback_id = callbackId;
    callbacks_.put(info);
  }

  /// `T` hides this when it adds callbacks: writes the child's corners into the copy of its record and returns TRUE, or
  /// returns FALSE to leave the child alone this time.
  BOOL ArrangeLayoutCallback(LayoutInfo&) {
    SnagtrapUtil::expect(false, ZD_LOCATION_AT(469));
    return FALSE;
  }

  /// Moves every child to its rectangle for the current client size, in one batch. Throws `std::bad_alloc`.
  void ArrangeLayout() {
    const std::size_t count = anchored_.size() + callbacks_.size();
    if (count == 0) return;
    const RECT parent = resizable::client_rect(dialog());
    resizable::WindowMoves moves(count);
    ForEachChild([&](const LayoutInfo& info) {
      if (!::IsWindow(info.hWnd)) return;
      RECT rect = {};
      UINT flags = 0;
      ComputeChildRect(info, parent, rect, flags);
      moves.add(info.hWnd, rect, flags);
    });
    moves.apply();
  }

  void ClearAnchors() noexcept {
    anchored_.clear();
    callbacks_.clear();
  }

  /// Gives a top-level dialog a sizing border; its client area keeps its size.
  void AddSizingBorder() noexcept { resizable::add_sizing_border(dialog()); }

  /// Keeps the erasing of the background off the children. Returns whether `hdc` is clipped now. Its clip region is not
  /// restored: the system releases the DC after erasing.
  BOOL ApplyEraseClipping(HDC hdc, BOOL bUndo) {
    ForgetClipState();
    if (bUndo || ::WindowFromDC(hdc) != dialog()) return FALSE;
    saved_clip_state_ = ::GetClipRgn(hdc, saved_clip_region_.get());
    base::Region erased;
    try {
      BuildEraseRegion(erased.put());
    } catch (...) {
      // A child or `T` was asked and threw: the DC is not clipped, and nothing counts as saved.
      ForgetClipState();
      throw;
    }
    ::ExtSelectClipRgn(hdc, erased.get(), RGN_AND);
    return TRUE;
  }

  void ForgetClipState() noexcept { saved_clip_state_ = nothing_saved; }

  /// What GetClipRgn returned at the last clipped erase; -1 when none is pending.
  int SavedClipState() const noexcept { return saved_clip_state_; }

  /// Hands out the area that the dialog itself must erase, in client coordinates. The caller owns the region.
  void BuildEraseRegion(HRGN* out) {
    SnagtrapUtil::expect(*out == nullptr, L"m_hRgn == 0", ZD_LOCATION);
    base::Region erased = resizable::client_region(dialog());
    ForEachChild([&](const LayoutInfo& info) { resizable::combine_with_child(erased, dialog(), info); });
    *out = erased.detach();
  }

  BOOL CanBeClipped(const LayoutInfo& info) const noexcept { return resizable::can_be_clipped(info); }

  BOOL MustRepaint(const LayoutInfo& info, const RECT& rcOld, const RECT& rcNew) const noexcept {
    return resizable::must_repaint(info, rcOld, rcNew);
  }

  /// The child's rectangle for a parent with that client rectangle, and the flags of SetWindowPos that bring it there.
  void ComputeChildRect(const LayoutInfo& info, const RECT& rcParentClient, RECT& rcChild, UINT& flags) const noexcept {
    const RECT old_rect = resizable::rect_in(dialog(), info.hWnd);
    rcChild = resizable::anchored_rect(rcParentClient, info.top_left, info.bottom_right);
    flags = resizable::move_flags(old_rect, rcChild, resizable::needs_refresh(info, old_rect, rcChild));
  }

  /// Called before and after the frame is calculated, see `resizable::NcCalcSizeHandler`.
  void AdjustNcCalcSize(BOOL bAfterDefault, NCCALCSIZE_PARAMS* params, LRESULT* pResult) noexcept {
    nc_calc_size_.adjust(dialog(), bAfterDefault != FALSE, params, pResult);
  }

 protected:
  ~CResizableLayout() = default;

  const resizable::LayoutList& Anchored() const noexcept { return anchored_; }

 private:
  static constexpr int nothing_saved = -1;

  HWND dialog() const noexcept { return static_cast<const T*>(this)->m_hWnd; }

  /// Visits the anchored children, then those that `T` gives a layout now. Visitors may change the lists.
  template <class Visit>
  void ForEachChild(const Visit& visit) {
    for (std::size_t i = 0; i < anchored_.size(); ++i) visit(anchored_[i]);
    for (std::size_t i = 0; i < callbacks_.size(); ++i) {
      LayoutInfo info = callbacks_[i];
      if (static_cast<T*>(this)->ArrangeLayoutCallback(info)) visit(info);
    }
  }

  resizable::LayoutList anchored_;
  resizable::LayoutList callbacks_;
  base::Region saved_clip_region_;
  int saved_clip_state_ = nothing_saved;
  resizable::NcCalcSizeHandler nc_calc_size_;
};
