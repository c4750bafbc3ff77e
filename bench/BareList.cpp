#include "BareList.h"

#include <algorithm>

namespace bench {

BareList::BareList(std::vector<std::wstring> names) : names_(std::move(names)) {
  std::sort(names_.begin(), names_.end(), std::greater<>());
}

BOOL BareList::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM, LRESULT& result, DWORD) {
  if (message == WM_INITDIALOG) {
    list_.Attach(GetItem(IDC_RULES_LIST));
    insert_column();
    fill();
    result = FALSE;
    return TRUE;
  }
  if (message != WM_COMMAND || LOWORD(wParam) != IDCANCEL) return FALSE;
  EndDialog(IDCANCEL);
  return TRUE;
}

void BareList::insert_column() {
  wchar_t title[] = L"名称";
  const RECT client = list_.GetClientRect();
  LVCOLUMNW column = {};
  column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
  column.fmt = LVCFMT_LEFT;
  column.pszText = title;
  column.cx = client.right - GetSystemMetrics(SM_CXVSCROLL);
  SendMessageW(list_.m_hWnd, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
}

void BareList::fill() {
  HWND list = list_.m_hWnd;
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
  SendMessageW(list, LVM_SETITEMCOUNT, names_.size(), 0);
  LVITEMW item = {};
  item.mask = LVIF_TEXT | LVIF_PARAM;
  for (std::wstring& name : names_) {
    item.pszText = name.data();
    ++item.lParam;
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
}

void prepare_controls() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
}

}  // namespace bench
