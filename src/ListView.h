#pragma once

#include <windows.h>
#include <commctrl.h>

#include "Window.h"

namespace zd_expiration_rule_plugin::ui_helper {

/// A list view whose window its dialog owns.
class CListView : public platform::CWindow {
 public:
  using CWindow::CWindow;

  int GetItemCount() const noexcept;
  /// The index of the selected item, -1 when there is none.
  int GetSelected() const noexcept;
  /// The data of an item; 0 when there is no such item.
  LPARAM GetItemData(int index) const noexcept;
  /// The index of the first item with this data, taken as 32 bits; -1 when there is none.
  int FindItemData(long data) const noexcept;
  /// Inserts at index 0; a sorted list view puts the item where it belongs.
  void InsertItem(const wchar_t* text, LPARAM data) const noexcept;
  /// Index -1 means every item.
  bool SetItemState(int index, UINT state, UINT mask) const noexcept;
  /// Selects an item and gives it the focus within the list; index -1 means every item.
  bool SelectItem(int index) const noexcept;
  /// Scrolls so that the item is the third visible row, where the list can scroll that far; the header takes the place
  /// of the first one.
  void ScrollItemIntoView(int index) const noexcept;
};

/// Holds back the painting of a window for a scope.
class ScopedRedrawOff {
 public:
  explicit ScopedRedrawOff(const platform::CWindow& window) noexcept : window_(window) {
    window_.Send(WM_SETREDRAW, FALSE);
  }
  ~ScopedRedrawOff() {
    // The window may already be destroyed, and InvalidateRect(nullptr) repaints the whole desktop.
    if (!IsWindow(window_.m_hWnd)) return;
    window_.Send(WM_SETREDRAW, TRUE);
    InvalidateRect(window_.m_hWnd, nullptr, TRUE);
  }
  ScopedRedrawOff(const ScopedRedrawOff&) = delete;
  ScopedRedrawOff& operator=(const ScopedRedrawOff&) = delete;

 private:
  const platform::CWindow& window_;
};

}  // namespace zd_expiration_rule_plugin::ui_helper
