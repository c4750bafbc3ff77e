#include "ExpirationRulesListDialog.h"

#include <commctrl.h>

#include "Report.h"
#include "Tables.h"
#include "string_t.h"
#include "zdStorageGetFieldHelper.h"

namespace zd_expiration_rule_plugin {

namespace {

constexpr int update_list_line = 123;
constexpr int map_id_line = 51;
constexpr int column_margin = 20;

}  // namespace

BOOL CExpirationRulesListDialog::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM, LRESULT& result,
                                                      DWORD mapId) {
  if (!SnagtrapUtil::expect(mapId == 0, L"0", ZD_PLACE_AT(map_id_line))) return FALSE;
  result = 0;
  switch (message) {
    case WM_INITDIALOG:
      result = OnInitDialog();
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) != IDCANCEL || HIWORD(wParam) != BN_CLICKED) return FALSE;
      EndDialog(IDCANCEL);
      return TRUE;
    default:
      return FALSE;
  }
}

LRESULT CExpirationRulesListDialog::OnInitDialog() {
  list_.Attach(GetItem(IDC_RULES_LIST));
  list_.Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
  std::wstring title = resource_string::resourse_2_string_impl(IDS_NAME_COLUMN);
  LVCOLUMNW column = {};
  column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.fmt = LVCFMT_LEFT;
  column.pszText = title.data();
  column.cx = list_.GetClientRect().right - column_margin;
  list_.Send(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  update_expiration_rule_list();
  return 0;
}

void CExpirationRulesListDialog::update_expiration_rule_list() {
  try {
    list_.Send(LVM_DELETEALLITEMS);
    const IkvTablePtr rules = open_rules_table(*storage_, 0);
    for_each_row(rules, [&] { add_rule_row(rules); });
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_PLACE_AT(update_list_line));
  }
}

void CExpirationRulesListDialog::add_rule_row(const IkvTablePtr& rules) {
  const _bstr_t name = GetField<_bstr_t>(rules, KVFIELD_RULE_NAME);
  LVITEMW item = {};
  item.mask = LVIF_TEXT | LVIF_PARAM;
  item.pszText = name.length() ? static_cast<wchar_t*>(name) : const_cast<wchar_t*>(L"");
  item.lParam = GetField<long>(rules, KVFIELD_RULE_ID);
  list_.Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

}  // namespace zd_expiration_rule_plugin
