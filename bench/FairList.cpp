#include "FairList.h"

#include <commctrl.h>

#include <algorithm>

namespace bench {

namespace {

LPARAM address(const void* object) { return reinterpret_cast<LPARAM>(object); }

}  // namespace

BOOL FairList::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result, DWORD) {
  switch (message) {
    case WM_INITDIALOG:
      initialise();
      result = FALSE;
      return TRUE;
    case WM_SIZE:
      if (!list_) return FALSE;
      layout_.place_grip();
      layout_.arrange();
      fit_column();
      return FALSE;
    case WM_NOTIFY:
      if (reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(LVN_ITEMCHANGED)) update_buttons();
      return FALSE;
    case WM_COMMAND:
      if (LOWORD(wParam) != IDCANCEL) return FALSE;
      EndDialog(IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

void FairList::initialise() {
  list_ = GetItem(IDC_RULES_LIST);
  send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
  insert_column();
  fill();
  LVITEMW first = {};
  first.state = first.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  send(LVM_SETITEMSTATE, 0, address(&first));
  layout_.measure(m_hWnd, HandLayout::Grip::triangular);
  layout_.place_grip();
  show();
  fit_column();
}

void FairList::insert_column() const {
  wchar_t title[] = L"名称";
  RECT client = {};
  ::GetClientRect(list_, &client);
  LVCOLUMNW column = {};
  column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
  column.fmt = LVCFMT_LEFT;
  column.pszText = title;
  column.cx = client.right - GetSystemMetrics(SM_CXVSCROLL);
  send(LVM_INSERTCOLUMNW, 0, address(&column));
}

void FairList::fit_column() const {
  RECT client = {};
  ::GetClientRect(list_, &client);
  send(LVM_SETCOLUMNWIDTH, 0, MAKELPARAM(client.right - GetSystemMetrics(SM_CXVSCROLL), 0));
}

void FairList::fill() {
  send(WM_SETREDRAW, FALSE);
  send(LVM_DELETEALLITEMS);
  std::vector<HostRow> rows = read_rows(storage_);
  std::sort(rows.begin(), rows.end(), [](const HostRow& a, const HostRow& b) { return a.name > b.name; });
  send(LVM_SETITEMCOUNT, rows.size());
  LVITEMW item = {};
  item.mask = LVIF_TEXT | LVIF_PARAM;
  for (HostRow& row : rows) {
    item.pszText = row.name.data();
    item.lParam = row.rule_id;
    send(LVM_INSERTITEMW, 0, address(&item));
  }
  send(WM_SETREDRAW, TRUE);
  InvalidateRect(list_, nullptr, TRUE);
}

void FairList::show() const {
  WINDOWPLACEMENT placement = {};
  DWORD size = sizeof placement;
  if (RegGetValueW(HKEY_CURRENT_USER, settings_path_.c_str(), L"ZDExpirationRulesDialog", RRF_RT_REG_BINARY, nullptr,
                   &placement, &size) == ERROR_SUCCESS) {
    placement.rcNormalPosition.bottom += GetSystemMetrics(SM_CYCAPTION);
    SetWindowPlacement(m_hWnd, &placement);
  } else {
    ShowWindow(m_hWnd, SW_SHOW);
  }
}

void FairList::update_buttons() const {
  const bool has_rule = send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)) >= 0;
  for (const int id : {IDC_EDIT_RULE, IDC_DELETE_RULE}) {
    HWND button = GetItem(id);
    if ((IsWindowEnabled(button) != FALSE) != has_rule) EnableWindow(button, has_rule);
  }
}

}  // namespace bench
