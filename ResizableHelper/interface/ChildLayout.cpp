#include "ChildLayout.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>

namespace resizable {

namespace {

constexpr std::size_t list_block_size = 10;

bool is_class(const LayoutInfo& info, const wchar_t* name) noexcept { return lstrcmpW(info.class_name, name) == 0; }

bool ask(const LayoutInfo& info, WPARAM question, void* answer) noexcept {
  return SendMessageW(info.hWnd, WMU_RESIZESUPPORT, question, reinterpret_cast<LPARAM>(answer)) != 0;
}

/// An owner-drawn button that does not handle hit tests is transparent.
bool lets_hits_through(HWND window) noexcept {
  RECT rect = {};
  GetWindowRect(window, &rect);
  const LONG position =
      static_cast<LONG>((static_cast<ULONG>(rect.top) << 16) | (static_cast<ULONG>(rect.left) & 0xFFFF));
  return SendMessageW(window, WM_NCHITTEST, 0, position) == HTTRANSPARENT;
}

void ask_properties(LayoutInfo& info) noexcept {
  info.resize_flags = {TRUE, TRUE, FALSE, FALSE};
  info.message_support = ask(info, RQ_PROPERTIES, &info.resize_flags);
  if (info.message_support) return;
  // A child without message support handles no questions: the properties of its class are cached, and its refresh is
  // fixed.
  info.resize_flags = {FALSE, TRUE, can_be_clipped(info), FALSE};
}

}  // namespace

RECT client_rect(HWND window) noexcept {
  RECT rect = {};
  GetClientRect(window, &rect);
  return rect;
}

RECT rect_in(HWND dialog, HWND child) noexcept {
  RECT rect = {};
  GetWindowRect(child, &rect);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

std::vector<HWND> children_of(HWND dialog) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    children.push_back(child);
  }
  return children;
}

LayoutInfo measured_child(HWND dialog, HWND child, CSize anchor_top_left, CSize anchor_bottom_right) noexcept {
  const RECT parent = client_rect(dialog);
  const RECT rect = rect_in(dialog, child);
  const CSize end = anchor_bottom_right == NOANCHOR ? anchor_top_left : anchor_bottom_right;
  LayoutInfo info = {};
  info.hWnd = child;
  info.top_left = measured_corner(parent, anchor_top_left, {rect.left, rect.top});
  info.bottom_right = measured_corner(parent, end, {rect.right, rect.bottom});
  GetClassNameW(child, info.class_name, ARRAYSIZE(info.class_name));
  ask_properties(info);
  return info;
}

bool can_be_clipped(const LayoutInfo& info) noexcept {
  BOOL answer = FALSE;
  if (info.message_support && ask(info, RQ_CLIPPING, &answer)) return answer != FALSE;
  const LONG style = GetWindowLongW(info.hWnd, GWL_STYLE);
  if (is_class(info, TOOLBARCLASSNAMEW)) return !(style & TBSTYLE_TRANSPARENT);
  if (!is_class(info, L"Button")) return true;
  const LONG type = style & BS_TYPEMASK;
  return type != BS_GROUPBOX && !(type == BS_OWNERDRAW && lets_hits_through(info.hWnd));
}

bool likes_clipping(const LayoutInfo& info) noexcept {
  return info.resize_flags.ask_clipping ? can_be_clipped(info) : info.resize_flags.likes_clipping != FALSE;
}

bool must_repaint(const LayoutInfo& info, const RECT& old_rect, const RECT& new_rect) noexcept {
  RepaintQuery query = {TRUE, old_rect, new_rect};
  return info.message_support && ask(info, RQ_REPAINT, &query) && query.repaint;
}

bool needs_refresh(const LayoutInfo& info, const RECT& old_rect, const RECT& new_rect) noexcept {
  return info.resize_flags.ask_refresh ? must_repaint(info, old_rect, new_rect)
                                       : info.resize_flags.needs_refresh != FALSE;
}

void LayoutList::put(const LayoutInfo& info) {
  // Once the child has a position, nothing fails.
  if (records_.size() == records_.capacity()) records_.reserve(std::max(list_block_size, 2 * records_.size()));
  const auto [entry, is_new] = positions_.try_emplace(info.hWnd, records_.size());
  if (is_new) {
    records_.push_back(info);
  } else {
    records_[entry->second] = info;
  }
}

void LayoutList::clear() noexcept {
  records_.clear();
  positions_.clear();
}

}  // namespace resizable
