#pragma once

#include <windows.h>

#include <type_traits>
#include <unordered_map>
#include <vector>

#include "ResizableGeometry.h"
#include "ResizableMsgSupport.h"

/// How one child of a resizable dialog follows the dialog's size: a plain record, copied whole.
struct LayoutInfo {
  HWND hWnd;                ///< not owned; may be destroyed by the time it is used
  UINT callback_id;         ///< 0 for an anchored child, else a child whose layout the dialog class gives
  wchar_t class_name[260];  ///< terminated
  resizable::Corner top_left;
  resizable::Corner bottom_right;
  BOOL message_support;  ///< the child handles WMU_RESIZESUPPORT
  ChildResizeFlags resize_flags;
};
static_assert(std::is_trivially_copyable_v<LayoutInfo>);

namespace resizable {

/// The client rectangle of a window; empty when it is destroyed.
RECT client_rect(HWND window) noexcept;

/// The rectangle of `child` in client coordinates of `dialog`.
RECT rect_in(HWND dialog, HWND child) noexcept;

/// The children of a dialog as they are now, from the top of the z-order to its bottom. Throws `std::bad_alloc`.
std::vector<HWND> children_of(HWND dialog);

/// The layout of a child as it stands now; asks the child for its properties. NOANCHOR at the bottom right stands for
/// the anchor at the top left.
LayoutInfo measured_child(HWND dialog, HWND child, CSize anchor_top_left, CSize anchor_bottom_right) noexcept;

/// Whether the dialog need not erase the child's area: what the child returns, else what its window class says.
bool can_be_clipped(const LayoutInfo& info) noexcept;
/// The same, from the cached property unless the child wants to be asked at each use.
bool likes_clipping(const LayoutInfo& info) noexcept;

/// Whether nothing of the child's picture can be kept: what the child returns, else false.
bool must_repaint(const LayoutInfo& info, const RECT& old_rect, const RECT& new_rect) noexcept;
/// The same, from the cached property unless the child wants to be asked at each use.
bool needs_refresh(const LayoutInfo& info, const RECT& old_rect, const RECT& new_rect) noexcept;

/// The records of a dialog's children in the order in which they came, one per window.
class LayoutList {
 public:
  /// Appends a record, or replaces that of the same window without changing the order. Throws `std::bad_alloc`.
  void put(const LayoutInfo& info);
  void clear() noexcept;
  std::size_t size() const noexcept { return records_.size(); }
  /// A copy: a child that is asked something may change the list.
  LayoutInfo operator[](std::size_t position) const { return records_[position]; }

 private:
  std::vector<LayoutInfo> records_;
  std::unordered_map<HWND, std::size_t> positions_;
};

}  // namespace resizable
