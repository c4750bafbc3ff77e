#include "SchedulePane.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "DialogControls.h"
#include "ModulePath.h"
#include "ProgressDialog.h"
#include "ScheduleFormat.h"
#include "ScheduleRecords.h"
#include "ScopedFlag.h"
#include "TextEncoding.h"
#include "Texts.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr wchar_t schedule_class[] = L"zdExpirationRulesSchedule";
constexpr int month_counts[] = {1, 3, 6, 12, 24, 36};
/// How many months before and after the first one its box offers.
constexpr int offered_months = 12;
constexpr int combo_drop_rows = 14;

/// Sets the text unless the window shows it already, so that nothing flickers.
void set_text(HWND window, const std::wstring& value) {
  if (base::window_text(window) != value) SetWindowTextW(window, value.c_str());
}

void move(HWND window, const RECT& bounds) {
  SetWindowPos(window, nullptr, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The height of a combo box is that of its list.
void move_combo(HWND window, RECT bounds) {
  bounds.bottom += combo_drop_rows * (bounds.bottom - bounds.top);
  move(window, bounds);
}

}  // namespace

SchedulePane::SchedulePane(HWND parent, UINT id, schedule::Day today) {
  const std::chrono::year_month_day date{today};
  choice_.first = date.year() / date.month();
  create({.class_name = schedule_class,
          .title = L"",
          .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
          .menu = nullptr,
          .icon = nullptr,
          .cursor = LoadCursorW(nullptr, IDC_ARROW),
          .parent = parent,
          .id = id});
}

void SchedulePane::show_data(ScheduleData data) {
  if (has_data_ && data == *data_) return;
  if (has_data_ && !baseline_) baseline_ = data_;
  data_ = std::make_shared<ScheduleData>(std::move(data));
  has_data_ = true;
  is_changed_ = true;
  fill_calendars();
  update();
}

void SchedulePane::forget_data() {
  baseline_.reset();
  data_ = std::make_shared<ScheduleData>();
  has_data_ = false;
  choice_.rule = choice_.setting = 0;
  fill_calendars();
  update();
}

void SchedulePane::select_rule(long number) { select(number, 0); }

void SchedulePane::select_setting(long number) { select(0, number); }

void SchedulePane::select(long rule, long setting) {
  if (choice_.rule == rule && choice_.setting == setting) return;
  choice_.rule = rule;
  choice_.setting = setting;
  update();
}

void SchedulePane::dismiss_comparison() {
  baseline_.reset();
  update();
}

void SchedulePane::toggle_estimates() {
  choice_.estimates = !choice_.estimates;
  update();
}

void SchedulePane::use_font(HFONT font, int dpi) {
  dpi_ = dpi;
  for (HWND window : {calendar_, first_, months_, estimates_, notice_, dismiss_})
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  year_->use_resolution(dpi);
  list_->use_font(font, dpi);
  lay_out();
}

std::vector<HWND> SchedulePane::focus_order() const {
  std::vector<HWND> order{calendar_, first_, months_, estimates_};
  if (comparing_) order.push_back(dismiss_);
  order.push_back(list_->list());
  return order;
}

LRESULT SchedulePane::handle_message(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
      return on_create();
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_COMMAND:
      return on_command(LOWORD(wparam), HIWORD(wparam));
    case WM_NOTIFY:
      if (auto& notification = *reinterpret_cast<NMHDR*>(lparam); list_ && notification.idFrom == IDC_SCHEDULE)
        return list_->notify(notification);
      return 0;
    default:
      return default_treatment(message, wparam, lparam);
  }
}

LRESULT SchedulePane::on_create() {
  create_choices();
  year_.emplace(handle(), IDC_YEAR, [this] { message_failed(); });
  list_.emplace(handle());
  update();
  return 0;
}

void SchedulePane::create_choices() {
  const auto child = [this](const wchar_t* window_class, DWORD style, UINT id, const std::wstring& caption) {
    return CreateWindowExW(0, window_class, caption.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, handle(),
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), base::module_instance(), nullptr);
  };
  constexpr DWORD combo = WS_TABSTOP | WS_VSCROLL;
  calendar_ = child(WC_COMBOBOXW, combo | CBS_DROPDOWNLIST, IDC_CALENDAR, {});
  first_ = child(WC_COMBOBOXW, combo | CBS_DROPDOWN | CBS_AUTOHSCROLL, IDC_FIRST_MONTH, {});
  months_ = child(WC_COMBOBOXW, combo | CBS_DROPDOWNLIST, IDC_MONTHS, {});
  estimates_ = child(WC_BUTTONW, WS_TABSTOP | BS_AUTOCHECKBOX, IDC_ESTIMATES, text(IDS_SHOW_ESTIMATES));
  notice_ = child(WC_STATICW, SS_LEFT | SS_NOPREFIX, IDC_NOTICE, {});
  dismiss_ = child(WC_BUTTONW, WS_TABSTOP, IDC_DISMISS, text(IDS_DISMISS));
  fill_calendars();
  for (int month = -offered_months; month <= offered_months; ++month)
    add_item(first_, base::from_utf8(schedule::to_text(choice_.first + std::chrono::months{month})));
  SetWindowTextW(first_, base::from_utf8(schedule::to_text(choice_.first)).c_str());
  for (const int count : month_counts) add_item(months_, text(IDS_MONTH_COUNT, {std::to_wstring(count)}));
  choose_item(months_, static_cast<int>(std::ranges::find(month_counts, choice_.months) - std::begin(month_counts)));
}

/// The first item means the calendars of the settings.
void SchedulePane::fill_calendars() {
  SendMessageW(calendar_, CB_RESETCONTENT, 0, 0);
  add_item(calendar_, text(IDS_CALENDAR_OF_SETTING));
  int selected = 0;
  for (const schedule::Calendar& calendar : data_->calendars) {
    const int item = add_item(calendar_, from_schedule_text(calendar.name));
    if (calendar.name == choice_.calendar) selected = item;
  }
  if (selected == 0) choice_.calendar.clear();
  choose_item(calendar_, selected);
}

LRESULT SchedulePane::on_command(WORD id, WORD code) {
  switch (id) {
    case IDC_CALENDAR:
    case IDC_MONTHS:
      if (code == CBN_SELCHANGE) read_choices();
      return 0;
    case IDC_FIRST_MONTH:
      // The edit shows a picked month only after this notification.
      if (code == CBN_SELCHANGE) PostMessageW(handle(), WM_COMMAND, MAKEWPARAM(id, CBN_EDITCHANGE), 0);
      if (code == CBN_EDITCHANGE) read_choices();
      return 0;
    case IDC_ESTIMATES:
      toggle_estimates();
      return 0;
    case IDC_DISMISS:
      dismiss_comparison();
      SetFocus(list_->list());
      return 0;
    default:
      return 0;
  }
}

void SchedulePane::read_choices() {
  const int calendar = chosen_item(calendar_);
  choice_.calendar = calendar > 0 ? data_->calendars.at(static_cast<size_t>(calendar) - 1).name : std::string();
  const std::wstring first = base::window_text(first_);
  // An incomplete typed month leaves the previous one in effect.
  if (const auto month = schedule::try_parse_month(to_schedule_text(first))) choice_.first = *month;
  choice_.months = month_counts[std::clamp<int>(chosen_item(months_), 0, std::size(month_counts) - 1)];
  update();
}

Schedule SchedulePane::schedule_of(const ScheduleChoice& choice, const schedule::Progress& progress) const {
  const std::shared_ptr<const ScheduleData> data = data_;
  const std::shared_ptr<const ScheduleData> baseline = baseline_;
  return baseline ? compare_schedules(*baseline, *data, choice, progress) : make_schedule(*data, choice, progress);
}

Schedule SchedulePane::schedule_of_year(const schedule::Progress& progress) const {
  ScheduleChoice choice = choice_;
  choice.year = choice.first.year();
  return schedule_of(choice, progress);
}

void SchedulePane::update() {
  is_stale_ = true;
  if (calculating_) return;
  const base::ScopedFlag calculating(calculating_);
  while (std::exchange(is_stale_, false)) show_schedule();
}

void SchedulePane::show_schedule() {
  try {
    calculate();
    list_->show(schedule_, comparing_);
    set_text(list_->heading(), heading());
    set_text(notice_, notice());
  } catch (const schedule::Cancelled&) {
    show_nothing(text(IDS_SCHEDULE_CANCELLED));
  } catch (...) {
    show_nothing(describe_caught_exception());
  }
  ShowWindow(dismiss_, comparing_ ? SW_SHOW : SW_HIDE);
  SendMessageW(estimates_, BM_SETCHECK, choice_.estimates ? BST_CHECKED : BST_UNCHECKED, 0);
  year_->show({.first = choice_.first, .marks = year_marks(schedule_, choice_.first), .texts = year_texts(comparing_)});
}

void SchedulePane::calculate() {
  ProgressDialog dialog(GetAncestor(handle(), GA_ROOT));
  const ScheduleChoice choice = choice_;
  Schedule calculated = schedule_of(choice, dialog.progress());
  // A change that affects no shown date starts no comparison.
  if (baseline_ && is_changed_ && !is_stale_ && calculated.lines.empty()) {
    baseline_.reset();
    calculated = schedule_of(choice, dialog.progress());
  }
  if (!is_stale_) is_changed_ = false;
  schedule_ = std::move(calculated);
  comparing_ = baseline_ != nullptr;
}

void SchedulePane::show_nothing(const std::wstring& why) {
  schedule_ = {};
  list_->show(schedule_, comparing_);
  set_text(notice_, why);
}

/// Shows the message of an exception of the pane, or of the year in it, instead of the dates.
void SchedulePane::message_failed() noexcept try {
  if (list_) show_nothing(describe_caught_exception());
} catch (...) {
  // Without memory for the message there is none.
}

std::wstring SchedulePane::heading() const {
  if (comparing_) return text(IDS_COMPARISON);
  if (schedule_.lines.empty()) return text(IDS_SCHEDULE_PANE);
  const schedule::ScheduleRow& row = schedule_.lines.front().row;
  const std::wstring rule = from_schedule_text(row.rule);
  if (choice_.setting == 0) return text(IDS_SCHEDULE_OF_RULE, {rule});
  return text(IDS_SCHEDULE_OF_SETTING, {from_schedule_text(row.setting), rule});
}

std::wstring SchedulePane::notice() const {
  if (comparing_ && schedule_.lines.empty()) return text(IDS_NO_DATE_TOUCHED);
  const std::wstring reason = format_reason(schedule_);
  const std::wstring horizon = format_horizon(schedule_, choice_.estimates);
  return comparing_ ? text(IDS_COMPARISON_NOTICE) + L"\n" + horizon : reason + horizon;
}

void SchedulePane::lay_out() {
  if (!list_) return;
  RECT client{};
  GetClientRect(handle(), &client);
  const ScheduleLayout layout = lay_out_schedule({client.right, client.bottom}, dpi_);
  move(list_->heading(), layout.heading);
  move_combo(calendar_, layout.calendar);
  move_combo(first_, layout.first);
  move_combo(months_, layout.months);
  move(estimates_, layout.estimates);
  move(notice_, layout.notice);
  move(dismiss_, layout.dismiss);
  move(year_->handle(), layout.year);
  move(list_->list(), layout.list);
}

}  // namespace workbench
