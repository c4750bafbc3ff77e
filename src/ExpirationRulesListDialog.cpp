#include "ExpirationRulesListDialog.h"

#include <commctrl.h>

#include "ColumnWidths.h"
#include "EditExpirationRuleDialog.h"
#include "ExpirationRule.h"
#include "RegistryHelper.h"
#include "Report.h"
#include "RuleLookup.h"
#include "RuleMessages.h"
#include "RuleUsers.h"
#include "string_t.h"

namespace zd_expiration_rule_plugin {

namespace {

using resource_string::resourse_2_string_impl;

constexpr int column_margin = 20;
constexpr double whole_width[] = {1.0};

/// Focuses a control as the dialog manager does: the button that Enter presses from there is drawn as the default one.
void move_focus(HWND dialog, HWND control) noexcept {
  SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

/// Restores the keyboard focus after a refill. Disabling the focused button, even for a moment, takes the focus away
/// from the whole dialog. If the button stays disabled, the list gets the focus.
class ScopedFocus {
 public:
  ScopedFocus(HWND dialog, HWND list) noexcept : dialog_(dialog), list_(list), focus_(::GetFocus()) {}
  ~ScopedFocus() {
    // While another window is active, the focus is not this dialog's to set.
    if (!focus_ || ::GetFocus() || GetActiveWindow() != dialog_) return;
    move_focus(dialog_, IsWindowEnabled(focus_) ? focus_ : list_);
  }
  ScopedFocus(const ScopedFocus&) = delete;
  ScopedFocus& operator=(const ScopedFocus&) = delete;

 private:
  HWND dialog_;
  HWND list_;
  HWND focus_;
};

std::wstring as_wide(const _bstr_t& text) {
  return text.length() ? std::wstring(static_cast<const wchar_t*>(text), text.length()) : std::wstring();
}

}  // namespace

BOOL CExpirationRulesListDialog::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                                      LRESULT& result, DWORD mapId) {
  if (!SnagtrapUtil::expect(mapId == 0, ZD_LOCATION_IN("ExpirationRulesListDialog.h", 51))) return FALSE;
  if (CResizableDialogImpl::ProcessWindowMessage(window, message, wParam, lParam, result)) return TRUE;
  result = 0;
  switch (message) {
    case WM_INITDIALOG:
      result = OnInitDialog();
      return TRUE;
    case WM_SIZE:
      OnSize();
      return FALSE;
    case WM_COMMAND:
      return OnCommand(LOWORD(wParam), HIWORD(wParam));
    case WM_NOTIFY:
      return lParam != 0 && OnListNotify(*reinterpret_cast<const NMHDR*>(lParam));
    default:
      return FALSE;
  }
}

BOOL CExpirationRulesListDialog::OnCommand(WORD id, WORD notification) {
  if (notification != BN_CLICKED) return FALSE;
  switch (id) {
    case IDCANCEL:
      EndDialog(IDCANCEL);
      return TRUE;
    case IDC_ADD_RULE:
      edit_rule(0);
      return TRUE;
    case IDC_EDIT_RULE:
      edit_rule_at(list_.GetSelected());
      return TRUE;
    case IDC_DELETE_RULE:
      try_to_delete_rule_impl();
      return TRUE;
    default:
      return FALSE;
  }
}

BOOL CExpirationRulesListDialog::OnListNotify(const NMHDR& notification) {
  if (notification.idFrom != IDC_RULES_LIST) return FALSE;
  switch (notification.code) {
    case static_cast<UINT>(NM_DBLCLK):
      edit_rule_at(reinterpret_cast<const NMITEMACTIVATE&>(notification).iItem);
      return TRUE;
    case static_cast<UINT>(LVN_KEYDOWN):
      if (reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey == VK_DELETE) try_to_delete_rule_impl();
      return TRUE;
    case static_cast<UINT>(LVN_ITEMCHANGED):
      update_buttons();
      return TRUE;
    default:
      return FALSE;
  }
}

LRESULT CExpirationRulesListDialog::OnInitDialog() {
  list_.Attach(GetItem(IDC_RULES_LIST));
  list_.Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
  list_.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
  insert_name_column();
  update_expiration_rule_list();
  if (!is_open()) return 0;
  if (list_.GetItemCount() > 0) list_.SelectItem(0);
  anchor_controls();
  restore_placement();
  if (!is_open()) return 0;
  fit_columns(whole_width);
  moved_controls_.measure(m_hWnd);
  return 0;  // the dialog sets no focus itself and the system does not move it
}

void CExpirationRulesListDialog::insert_name_column() {
  std::wstring title = resourse_2_string_impl(IDS_NAME_COLUMN);
  const RECT client = list_.GetClientRect();
  LVCOLUMNW column = {};
  column.mask = LVCF_FMT | LVCF_TEXT | LVCF_SUBITEM;
  column.fmt = LVCFMT_LEFT;
  column.pszText = title.data();
  column.cx = client.right - client.left - column_margin;
  if (column.cx != -1) column.mask |= LVCF_WIDTH;
  list_.Send(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
}

void CExpirationRulesListDialog::anchor_controls() {
  for (const int id : {IDC_RULES_GROUP, IDC_RULES_LIST}) AddAnchor(GetItem(id), TOP_LEFT, BOTTOM_RIGHT);
  for (const int id : {IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE}) AddAnchor(GetItem(id), TOP_RIGHT);
  AddAnchor(GetItem(IDCANCEL), BOTTOM_RIGHT);
}

void CExpirationRulesListDialog::restore_placement() {
  m_bSavePlacement = TRUE;
  m_bRectOnly = FALSE;
  RestorePlacement(HKEY_CURRENT_USER, zd_common::ZDRegistryPath(), L"Windows Placement", L"ZDExpirationRulesDialog",
                   FALSE);
}

void CExpirationRulesListDialog::OnSize() {
  // The first sizes arrive while the dialog is being created, before it has its list.
  if (!IsWindow(m_hWnd) || !list_.m_hWnd) return;
  fit_columns(whole_width);
  moved_controls_.repaint(m_hWnd);
}

void CExpirationRulesListDialog::fit_columns(std::span<const double> fractions) {
  const RECT client = list_.GetClientRect();
  // Always leaves space for a vertical scroll bar.
  const int whole = client.right - client.left - GetSystemMetrics(SM_CXVSCROLL);
  share_width(whole, fractions,
              [this](WPARAM column, int width) { list_.Send(LVM_SETCOLUMNWIDTH, column, MAKELPARAM(width, 0)); });
}

void CExpirationRulesListDialog::update_expiration_rule_list() {
  const ui_helper::ScopedRedrawOff redraw_off(list_);
  const unsigned refill = ++refills_;
  RuleRows rows;
  try {
    list_.Send(LVM_DELETEALLITEMS);
    const auto add_rule_row = [&](const _bstr_t& name, long rule_id) { rows.add(name, rule_id); };
    for_each_rule(*storage_, add_rule_row);
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION_AT(123));
  }
  // A call of the host may have let another refill run; the one begun last shows the rules as they are now.
  if (refill == refills_) show_rows(rows, refill);
}

// A sorted list view searches the position of every new item; items that arrive from the last to the first all belong
// at the top and cost it least.
void CExpirationRulesListDialog::show_rows(RuleRows& rows, unsigned refill) {
  if (rows.size() == 0 || !is_open()) return;
  rows.sort_backwards();
  list_.Send(LVM_SETITEMCOUNT, rows.size());
  rows.for_each([&](const wchar_t* name, long rule_id) {
    if (refill == refills_) list_.InsertItem(name, rule_id);
  });
}

void CExpirationRulesListDialog::update_buttons() {
  const bool has_rule = static_cast<long>(list_.GetItemData(list_.GetSelected())) > 0;
  for (const int id : {IDC_EDIT_RULE, IDC_DELETE_RULE}) platform::CWindow(GetItem(id)).Enable(has_rule);
}

void CExpirationRulesListDialog::edit_rule(long rule_id) {
  const ScopedFocus focus(m_hWnd, list_.m_hWnd);
  CEditExpirationRuleDialog editor(storage_, rule_id);
  if (!is_open() || editor.DoModal(m_hWnd) != IDOK || !is_open()) return;
  update_expiration_rule_list();
  select_rule(editor.rule_id());
}

void CExpirationRulesListDialog::edit_rule_at(int index) {
  // A destroyed list returns 0, which would be the first index and then a new rule.
  if (index >= 0 && IsWindow(list_.m_hWnd)) edit_rule(static_cast<long>(list_.GetItemData(index)));
}

void CExpirationRulesListDialog::select_rule(long rule_id) {
  if (!is_open()) return;
  if (rule_id == 0) {
    // No selection follows the refill, which would set the buttons.
    update_buttons();
    return;
  }
  const int index = list_.FindItemData(rule_id);
  scroll_item_into_view(index);
  list_.SelectItem(index);
  move_focus(m_hWnd, list_.m_hWnd);
}

void CExpirationRulesListDialog::scroll_item_into_view(int index) { list_.ScrollItemIntoView(index); }

_bstr_t CExpirationRulesListDialog::expiration_rule_name(long rule_id) const {
  _bstr_t name;
  try {
    name = rule_name_of(*storage_, rule_id, ZD_LOCATION_AT(165));
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION_AT(175));
  }
  return name;
}

bool CExpirationRulesListDialog::is_expiration_rule_uses(long rule_id, std::vector<std::wstring>& users) {
  users.clear();
  try {
    const RuleUsersLocations locations = {ZD_LOCATION_AT(139), ZD_LOCATION_AT(142), ZD_LOCATION_AT(145)};
    const _bstr_t name = expiration_rule_name(rule_id);
    collect_rule_users(open_symbol_source_settings_table(*storage_), name, locations, users);
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION_AT(154));
  }
  return !users.empty();
}

void CExpirationRulesListDialog::try_to_delete_rule_impl() {
  const auto rule_id = static_cast<long>(list_.GetItemData(list_.GetSelected()));
  if (rule_id == 0) return;
  const ScopedFocus focus(m_hWnd, list_.m_hWnd);
  std::vector<std::wstring> users;
  if (is_expiration_rule_uses(rule_id, users)) {
    show_rule_in_use(users);
    return;
  }
  if (!confirm_delete(rule_id)) return;
  SnagtrapUtil::expect(delete_rule(*storage_, rule_id), ZD_LOCATION_AT(220));
  if (!is_open()) return;
  update_expiration_rule_list();
  if (is_open() && list_.SelectItem(0)) list_.Send(LVM_ENSUREVISIBLE, 0, FALSE);
}

bool CExpirationRulesListDialog::confirm_delete(long rule_id) {
  const std::wstring text =
      confirm_delete_text(resourse_2_string_impl(IDS_CONFIRM_DELETE), as_wide(expiration_rule_name(rule_id)));
  return show_message(text, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void CExpirationRulesListDialog::show_rule_in_use(const std::vector<std::wstring>& users) {
  show_message(rule_in_use_text(resourse_2_string_impl(IDS_RULE_IN_USE), users), MB_OK | MB_ICONEXCLAMATION);
}

int CExpirationRulesListDialog::show_message(const std::wstring& text, UINT flags) {
  const std::wstring caption = resourse_2_string_impl(IDS_CAPTION);
  // A dialog that is destroyed or ended shows no question and ignores a result that arrives afterwards.
  const int answer = is_open() ? MessageBoxW(m_hWnd, text.c_str(), caption.c_str(), flags) : 0;
  return is_open() ? answer : 0;
}

}  // namespace zd_expiration_rule_plugin
