#include "EditExpirationRuleDialog.h"

#include <commctrl.h>

#include <new>

#include "Bstr.h"
#include "ComStrings.h"
#include "Report.h"
#include "RuleDescription.h"
#include "RuleLookup.h"
#include "RuleName.h"
#include "string_t.h"

namespace zd_expiration_rule_plugin {

namespace {

using resource_string::resourse_2_string_impl;
using SnagtrapUtil::expect;
using SnagtrapUtil::require_success;

constexpr WPARAM name_limit = 63;
constexpr WPARAM offset_limit = 2;
constexpr short largest_offset = 99;
constexpr int days_in_month = 31;
constexpr int days_in_week = 7;
constexpr int counted_ordinals = 4;

/// The caption of every message box.
std::wstring message_caption() { return resourse_2_string_impl(IDS_CAPTION); }

_bstr_t as_com_string(const std::wstring& text) {
  BSTR copy = base::create_bstr(text);
  if (!copy) throw std::bad_alloc();
  return platform::take_string(copy);
}

}  // namespace

CEditExpirationRuleDialog::CEditExpirationRuleDialog(StorageBlock* storage, long rule_id)
    : storage_(storage),
      row_(rule_id != 0 ? open_rules_table(*storage, rule_id)
                        : create_new_rule_row([] { return as_com_string(resourse_2_string_impl(IDS_NEW_RULE_NAME)); })),
      title_(resourse_2_string_impl(rule_id != 0 ? IDS_EDIT_RULE_TITLE : IDS_ADD_RULE_TITLE)) {}

long CEditExpirationRuleDialog::rule_id() const { return row_.rule_id(); }

BOOL CEditExpirationRuleDialog::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                                     DWORD mapId) {
  if (!expect(mapId == 0, L"0", ZD_LOCATION)) return FALSE;
  result = 0;
  switch (message) {
    case WM_INITDIALOG:
      result = OnInitDialog();
      return TRUE;
    case WM_VSCROLL:
      if (LOWORD(wParam) != SB_THUMBPOSITION && LOWORD(wParam) != SB_THUMBTRACK) return FALSE;
      if (reinterpret_cast<HWND>(lParam) != spin_.m_hWnd) return FALSE;
      OnSpinScrolled(wParam);
      return TRUE;
    case ui_helper::edit_typed_message:
      if (reinterpret_cast<HWND>(wParam) != offset_edit_.m_hWnd) return FALSE;
      OnOffsetTyped();
      return TRUE;
    case WM_COMMAND:
      return OnCommand(LOWORD(wParam), HIWORD(wParam));
    default:
      return FALSE;
  }
}

BOOL CEditExpirationRuleDialog::OnCommand(WORD id, WORD notification) {
  switch (id) {
    case IDOK:
      if (notification != BN_CLICKED) return FALSE;
      OnOk();
      return TRUE;
    case IDCANCEL:
      if (notification != BN_CLICKED) return FALSE;
      OnCancel();
      return TRUE;
    case IDC_DAY_OF_MONTH_MODE:
    case IDC_WEEKDAY_MODE:
      if (notification != BN_CLICKED) return FALSE;
      update_controls_state();
      update_description();
      return TRUE;
    case IDC_DAY_TYPE:
    case IDC_DAY_OF_MONTH:
    case IDC_DAY_MONTH:
    case IDC_WEEK_ORDINAL:
    case IDC_WEEKDAY:
    case IDC_WEEKDAY_MONTH:
      if (notification != CBN_SELCHANGE) return FALSE;
      update_description();
      return TRUE;
    case IDC_MOVE_TO_NEXT_TRADING_DAY:
      if (notification != BN_CLICKED) return FALSE;
      update_description();
      return TRUE;
    default:
      return FALSE;
  }
}

void CEditExpirationRuleDialog::OnSpinScrolled(WPARAM wParam) {
  ui_helper::AdjustEditControl(spin_, offset_edit_, static_cast<short>(HIWORD(wParam)));
  update_description();
}

void CEditExpirationRuleDialog::OnOffsetTyped() {
  ui_helper::AdjustSpinControl(spin_, offset_edit_);
  update_description();
}

void CEditExpirationRuleDialog::OnOk() {
  if (progress_ != Progress::editing || !is_open()) return;
  const ScopedChecking checking(&progress_);
  if (!validate_input()) return;
  flush_data_to_database();
  if (is_open()) EndDialog(IDOK);
}

void CEditExpirationRuleDialog::OnCancel() {
  if (progress_ != Progress::storing && is_open()) EndDialog(IDCANCEL);
}

LRESULT CEditExpirationRuleDialog::OnInitDialog() {
  progress_ = Progress::editing;
  SetText(title_.c_str());
  const ExpirationRule rule = read_rule();
  if (!is_open()) return 0;
  fill_name(rule);
  ui_helper::add_value_to_combo(control(IDC_DAY_TYPE), IDS_TRADING_DAYS, DAYTYPE_TRADING_DAYS);
  ui_helper::add_value_to_combo(control(IDC_DAY_TYPE), IDS_CALENDAR_DAYS, DAYTYPE_CALENDAR_DAYS);
  ui_helper::select_combo_value(control(IDC_DAY_TYPE), rule.DayType);
  fill_offset(rule);
  fill_day_mode(rule);
  update_controls_state();
  fill_combos(rule);
  set_checked(IDC_MOVE_TO_NEXT_TRADING_DAY, rule.MoveToNextTradingDay == 1);
  prepare_description();
  update_description();
  return 0;  // the dialog manager sets no initial focus
}

ExpirationRule CEditExpirationRuleDialog::read_rule() const {
  ExpirationRule rule;
  rule.RuleName = row_.name();
  for (const auto member :
       {&ExpirationRule::DayType, &ExpirationRule::RollOffset, &ExpirationRule::DayMode, &ExpirationRule::DayOfMonth,
        &ExpirationRule::DayMonth, &ExpirationRule::WeekOrdinal, &ExpirationRule::Weekday,
        &ExpirationRule::WeekdayMonth, &ExpirationRule::MoveToNextTradingDay}) {
    rule.*member = row_.value(member);
  }
  return rule;
}

void CEditExpirationRuleDialog::fill_name(const ExpirationRule& rule) {
  const platform::CWindow name = control(IDC_NAME);
  name.Send(EM_LIMITTEXT, name_limit);
  name.SetText(rule.RuleName);
}

void CEditExpirationRuleDialog::fill_offset(const ExpirationRule& rule) {
  const platform::CWindow edit = control(IDC_OFFSET);
  offset_edit_.SubclassWindow(edit.m_hWnd);
  edit.Send(EM_LIMITTEXT, offset_limit);
  spin_.Attach(GetItem(IDC_OFFSET_SPIN));
  spin_.SetRange(0, largest_offset);
  if (spin_.GetBuddy() != edit.m_hWnd) spin_.SetBuddy(edit.m_hWnd);
  spin_.SetPos(rule.RollOffset);
  ui_helper::AdjustEditControl(spin_, offset_edit_, rule.RollOffset);
}

void CEditExpirationRuleDialog::fill_day_mode(const ExpirationRule& rule) {
  const long mode = rule.DayMode;
  set_checked(IDC_DAY_OF_MONTH_MODE, mode == DAYMODE_DAY_OF_MONTH);
  set_checked(IDC_WEEKDAY_MODE, mode == DAYMODE_WEEKDAY);
  if (mode != DAYMODE_DAY_OF_MONTH && mode != DAYMODE_WEEKDAY) make_modes_reachable();
}

// The system takes a clear radio button out of the tab order and clicks one that gets the focus: with both clear, the
// keyboard could not reach them, or would choose one by reaching it.
void CEditExpirationRuleDialog::make_modes_reachable() {
  for (const int id : {IDC_DAY_OF_MONTH_MODE, IDC_WEEKDAY_MODE}) control(id).Send(BM_SETDONTCLICK, TRUE);
  HWND first = GetItem(IDC_DAY_OF_MONTH_MODE);
  SetWindowLongPtrW(first, GWL_STYLE, GetWindowLongPtrW(first, GWL_STYLE) | WS_TABSTOP);
}

void CEditExpirationRuleDialog::fill_combos(const ExpirationRule& rule) {
  const platform::CWindow days = control(IDC_DAY_OF_MONTH);
  for (int day = 1; day <= days_in_month; ++day) ui_helper::add_value_to_combo(days, IDS_FIRST_DAY + day - 1, day);
  ui_helper::select_combo_value(days, rule.DayOfMonth);
  fill_months(IDC_DAY_MONTH, rule.DayMonth);

  const platform::CWindow ordinals = control(IDC_WEEK_ORDINAL);
  for (int ordinal = 1; ordinal <= counted_ordinals; ++ordinal) {
    ui_helper::add_value_to_combo(ordinals, IDS_FIRST_DAY + ordinal - 1, ordinal);
  }
  ui_helper::add_value_to_combo(ordinals, IDS_LAST_OCCURRENCE, last_week_ordinal);
  ui_helper::select_combo_value(ordinals, rule.WeekOrdinal);

  const platform::CWindow weekdays = control(IDC_WEEKDAY);
  for (int day = 0; day < days_in_week; ++day) ui_helper::add_value_to_combo(weekdays, IDS_SUNDAY + day, day);
  ui_helper::select_combo_value(weekdays, rule.Weekday);
  fill_months(IDC_WEEKDAY_MONTH, rule.WeekdayMonth);
}

void CEditExpirationRuleDialog::fill_months(int combo_id, long month) {
  const platform::CWindow months = control(combo_id);
  ui_helper::add_value_to_combo(months, IDS_PREVIOUS_MONTH, MONTH_PREVIOUS);
  ui_helper::add_value_to_combo(months, IDS_CURRENT_MONTH, MONTH_CURRENT);
  ui_helper::add_value_to_combo(months, IDS_NEXT_MONTH, MONTH_NEXT);
  ui_helper::select_combo_value(months, month);
}

void CEditExpirationRuleDialog::prepare_description() {
  description_.Attach(GetItem(IDC_DESCRIPTION));
  const auto font = reinterpret_cast<HFONT>(description_.Send(WM_GETFONT));
  LOGFONTW logical = {};
  GetObjectW(font, sizeof logical, &logical);
  logical.lfWeight = FW_BOLD;
  expect(!bold_font_, L"m_hFont == 0", ZD_LOCATION);
  bold_font_.reset(CreateFontIndirectW(&logical));
  description_.Send(WM_SETFONT, reinterpret_cast<WPARAM>(bold_font_.get()), TRUE);
}

void CEditExpirationRuleDialog::update_controls_state() {
  const bool by_day_of_month = is_checked(IDC_DAY_OF_MONTH_MODE);
  for (const int id : {IDC_DAY_OF_MONTH, IDC_DAY_SUFFIX, IDC_DAY_MONTH}) control(id).Enable(by_day_of_month);
  for (const int id : {IDC_WEEK_ORDINAL, IDC_WEEKDAY, IDC_WEEKDAY_SUFFIX, IDC_WEEKDAY_MONTH}) {
    control(id).Enable(!by_day_of_month);
  }
}

void CEditExpirationRuleDialog::update_description() {
  RuleDescriptionTexts texts;
  texts.offset_label = control_text(IDC_OFFSET_LABEL);
  texts.offset = control_text(IDC_OFFSET);
  texts.day_type = control_text(IDC_DAY_TYPE);
  texts.offset_suffix = control_text(IDC_OFFSET_SUFFIX);
  texts.day_label = control_text(IDC_DAY_LABEL);
  texts.by_day_of_month = is_checked(IDC_DAY_OF_MONTH_MODE);
  texts.day_of_month = control_text(IDC_DAY_OF_MONTH);
  texts.day_suffix = control_text(IDC_DAY_SUFFIX);
  texts.day_month = control_text(IDC_DAY_MONTH);
  texts.week_ordinal = control_text(IDC_WEEK_ORDINAL);
  texts.weekday = control_text(IDC_WEEKDAY);
  texts.weekday_suffix = control_text(IDC_WEEKDAY_SUFFIX);
  texts.weekday_month = control_text(IDC_WEEKDAY_MONTH);
  texts.closing_or = resourse_2_string_impl(IDS_CLOSING_OR);
  texts.closing_direction =
      resourse_2_string_impl(is_checked(IDC_MOVE_TO_NEXT_TRADING_DAY) ? IDS_CLOSING_NEXT : IDS_CLOSING_PREVIOUS);
  texts.closing_trading_day = resourse_2_string_impl(IDS_CLOSING_TRADING_DAY);
  description_.SetText(describe_rule(texts).c_str());
}

bool CEditExpirationRuleDialog::validate_input() {
  const std::wstring name = control_text(IDC_NAME);
  if (name.empty()) {
    show_message(IDS_NAME_EMPTY);
    return false;
  }
  checked_id_ = rule_id();
  if (is_expiration_rule_name_not_unique(as_com_string(name), checked_id_ >= 1)) {
    show_message(IDS_NAME_NOT_UNIQUE);
    return false;
  }
  if (has_invalid_name_characters(name)) {
    show_message(IDS_NAME_BAD_CHARACTER);
    return false;
  }
  return is_open();
}

bool CEditExpirationRuleDialog::is_expiration_rule_name_not_unique(const _bstr_t& name, const bool editing) {
  try {
    return find_same_name(name, editing);
  } catch (...) {
    // A storage that cannot be read must not keep the user from saving.
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION);
    return false;
  }
}

bool CEditExpirationRuleDialog::find_same_name(const _bstr_t& name, const bool editing) {
  // Every call has a location of its own, so that a report says which of them failed.
  const NameSearchLocations locations = {
      {
          ZD_LOCATION,
          ZD_LOCATION,
          ZD_LOCATION,
      },
      ZD_LOCATION,
      ZD_LOCATION,
  };
  const bool found = is_rule_name_stored(*storage_, name, locations);
  // A rule that keeps its name finds its own row.
  return found && !(editing && platform::same_text(row_.name(), name));
}

void CEditExpirationRuleDialog::flush_data_to_database() {
  try {
    save_rule();
  } catch (...) {
    SnagtrapUtil::report_exception_in_flight(ZD_LOCATION);
  }
}

void CEditExpirationRuleDialog::save_rule() {
  const long read_id = rule_id();
  if (!is_open()) return;
  // If the host returned the number a moment ago and fails to now, the rule must not be stored a second time.
  const long stored_id = read_id != 0 ? read_id : checked_id_;
  const ExpirationRule rule = collect_rule();
  // If the controls were destroyed while they were read, the rule is incomplete.
  if (!is_open()) return;
  progress_ = Progress::storing;
  if (stored_id != 0) {
    require_success(update_rule(*storage_, stored_id, rule), ZD_LOCATION);
    return;
  }
  long new_id = 0;
  require_success(add_rule(*storage_, rule, new_id), ZD_LOCATION);
  row_.set_rule_id(new_id);
}

ExpirationRule CEditExpirationRuleDialog::collect_rule() const {
  const auto chosen = [this](int id) { return static_cast<long>(get_current_combobox_value(id)); };
  ExpirationRule rule;
  rule.RuleName = as_com_string(control_text(IDC_NAME));
  rule.MoveToNextTradingDay = is_checked(IDC_MOVE_TO_NEXT_TRADING_DAY) ? 1 : 0;
  rule.WeekdayMonth = chosen(IDC_WEEKDAY_MONTH);
  rule.Weekday = chosen(IDC_WEEKDAY);
  rule.WeekOrdinal = chosen(IDC_WEEK_ORDINAL);
  rule.DayMonth = chosen(IDC_DAY_MONTH);
  rule.DayOfMonth = chosen(IDC_DAY_OF_MONTH);
  rule.DayMode = is_checked(IDC_DAY_OF_MONTH_MODE) ? DAYMODE_DAY_OF_MONTH : DAYMODE_WEEKDAY;
  rule.DayType = chosen(IDC_DAY_TYPE);
  rule.RollOffset = spin_.GetPos();
  return rule;
}

platform::CWindow CEditExpirationRuleDialog::control(int id) const noexcept { return platform::CWindow(GetItem(id)); }

std::wstring CEditExpirationRuleDialog::control_text(int id) const { return control(id).GetText(); }

bool CEditExpirationRuleDialog::is_checked(int id) const noexcept {
  return control(id).Send(BM_GETCHECK) != BST_UNCHECKED;
}

void CEditExpirationRuleDialog::set_checked(int id, bool checked) const noexcept {
  control(id).Send(BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED);
}

unsigned long long CEditExpirationRuleDialog::get_current_combobox_value(int id) const noexcept {
  HWND combo = GetItem(id);
  // The system returns 0 for a destroyed window, which would pass for a choice.
  if (!expect(IsWindow(combo) != FALSE, L"::IsWindow(Combo.m_hWnd)", ZD_LOCATION)) {
    return static_cast<unsigned long long>(CB_ERR);
  }
  const auto selected = SendMessageW(combo, CB_GETCURSEL, 0, 0);
  return static_cast<unsigned long long>(SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(selected), 0));
}

void CEditExpirationRuleDialog::show_message(int string_id) {
  const std::wstring text = resourse_2_string_impl(string_id);
  const std::wstring caption = message_caption();
  if (!is_open()) return;
  MessageBoxW(m_hWnd, text.c_str(), caption.c_str(), MB_OK | MB_ICONEXCLAMATION);
  if (is_open()) control(IDC_NAME).SetFocus();
}

}  // namespace zd_expiration_rule_plugin
