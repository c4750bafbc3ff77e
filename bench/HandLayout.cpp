#include "HandLayout.h"

#include "resource.h"

namespace bench {

namespace {

constexpr int ids[] = {IDC_RULES_GROUP, IDC_RULES_LIST, IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE, IDCANCEL};
constexpr UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

}  // namespace

void HandLayout::measure(HWND dialog, Grip grip) noexcept {
  dialog_ = dialog;
  GetClientRect(dialog, &client_);
  for (std::size_t i = 0; i < count; ++i) {
    children_[i] = GetDlgItem(dialog, ids[i]);
    GetWindowRect(children_[i], &rects_[i]);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rects_[i]), 2);
  }
  const bool is_triangular = grip == Grip::triangular;
  const DWORD style = WS_CHILD | SBS_SIZEGRIP | (is_triangular ? WS_CLIPSIBLINGS : WS_VISIBLE);
  grip_size_ = {GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL)};
  grip_ = CreateWindowExW(0, L"SCROLLBAR", nullptr, style, 0, 0, grip_size_.cx, grip_size_.cy, dialog, nullptr, nullptr,
                          nullptr);
  if (!is_triangular) return;
  const POINT corners[] = {{0, grip_size_.cy}, {grip_size_.cx, grip_size_.cy}, {grip_size_.cx, 0}};
  SetWindowRgn(grip_, CreatePolygonRgn(corners, ARRAYSIZE(corners), WINDING), FALSE);
}

void HandLayout::arrange() const noexcept {
  RECT client = {};
  GetClientRect(dialog_, &client);
  const int right = client.right - client_.right;
  const int down = client.bottom - client_.bottom;
  HDWP batch = BeginDeferWindowPos(count);
  batch = stretched(batch, 0, right, down);
  batch = stretched(batch, 1, right, down);
  batch = moved(batch, 2, right, 0);
  batch = moved(batch, 3, right, 0);
  batch = moved(batch, 4, right, 0);
  batch = moved(batch, 5, right, down);
  EndDeferWindowPos(batch);
}

void HandLayout::place_grip() const noexcept {
  RECT client = {};
  GetClientRect(dialog_, &client);
  SetWindowPos(grip_, HWND_BOTTOM, client.right - grip_size_.cx, client.bottom - grip_size_.cy, 0, 0,
               SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER | SWP_SHOWWINDOW);
}

HDWP HandLayout::stretched(HDWP batch, std::size_t index, int right, int down) const noexcept {
  const RECT& rect = rects_[index];
  return DeferWindowPos(batch, children_[index], nullptr, 0, 0, rect.right - rect.left + right,
                        rect.bottom - rect.top + down, flags | SWP_NOMOVE);
}

HDWP HandLayout::moved(HDWP batch, std::size_t index, int right, int down) const noexcept {
  const RECT& rect = rects_[index];
  return DeferWindowPos(batch, children_[index], nullptr, rect.left + right, rect.top + down, 0, 0, flags | SWP_NOSIZE);
}

}  // namespace bench
