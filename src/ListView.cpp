#include "ListView.h"

namespace zd_expiration_rule_plugin::ui_helper {

namespace {

WPARAM as_index(int index) noexcept { return static_cast<WPARAM>(index); }

}  // namespace

int CListView::GetItemCount() const noexcept { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }

int CListView::GetSelected() const noexcept {
  return static_cast<int>(Send(LVM_GETNEXTITEM, as_index(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}

LPARAM CListView::GetItemData(int index) const noexcept {
  LVITEMW item = {};
  item.mask = LVIF_PARAM;
  item.iItem = index;
  return Send(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) ? item.lParam : 0;
}

int CListView::FindItemData(long data) const noexcept {
  const int count = GetItemCount();
  for (int index = 0; index < count; ++index) {
    if (static_cast<long>(GetItemData(index)) == data) return index;
  }
  return -1;
}

void CListView::InsertItem(const wchar_t* text, LPARAM data) const noexcept {
  LVITEMW item = {};
  item.mask = LVIF_TEXT | LVIF_PARAM;
  item.pszText = const_cast<wchar_t*>(text);
  item.lParam = data;
  Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

bool CListView::SetItemState(int index, UINT state, UINT mask) const noexcept {
  LVITEMW item = {};
  item.state = state;
  item.stateMask = mask;
  return Send(LVM_SETITEMSTATE, as_index(index), reinterpret_cast<LPARAM>(&item)) != FALSE;
}

bool CListView::SelectItem(int index) const noexcept {
  return SetItemState(index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

void CListView::ScrollItemIntoView(int index) const noexcept {
  RECT bounds = {};
  bounds.left = LVIR_BOUNDS;
  Send(LVM_GETITEMRECT, as_index(index), reinterpret_cast<LPARAM>(&bounds));
  // The item's top less two item heights.
  Send(LVM_SCROLL, static_cast<WPARAM>(bounds.left), 3 * bounds.top - 2 * bounds.bottom);
}

}  // namespace zd_expiration_rule_plugin::ui_helper
