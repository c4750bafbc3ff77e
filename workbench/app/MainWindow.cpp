#include "MainWindow.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "CommandTargets.h"
#include "Hresult.h"
#include "ModulePath.h"
#include "ScheduleConversion.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "WaitBox.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr UINT run_posted_message = WM_APP;
constexpr UINT_PTR clock_timer = 1;
constexpr UINT clock_period_ms = 1000;
constexpr SIZE first_size{1250, 880};  // at 96 dpi

HICON load_icon() {
  return static_cast<HICON>(LoadImageW(base::module_instance(), MAKEINTRESOURCEW(IDI_WORKBENCH), IMAGE_ICON, 0, 0,
                                       LR_DEFAULTSIZE | LR_SHARED));
}

base::Font message_font(int dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, static_cast<UINT>(dpi));
  return base::Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

POINT point_of(LPARAM lparam) { return {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)}; }

/// The children are redrawn instead of moved with their old picture, which may show parts of a window above them.
HDWP defer(HDWP batch, HWND window, const RECT& bounds) {
  if (!batch) return nullptr;
  return DeferWindowPos(batch, window, nullptr, bounds.left, bounds.top, bounds.right - bounds.left,
                        bounds.bottom - bounds.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

}  // namespace

MainWindow::MainWindow(MainWindowEvents events) : events_(std::move(events)) {
  base::Menu menu(load_menu(IDR_MAIN_MENU));
  create({.class_name = main_window_class,
          .title = text(IDS_TITLE).c_str(),
          .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
          .menu = menu.detach(),
          .icon = load_icon(),
          .cursor = LoadCursorW(nullptr, IDC_ARROW)});
  move_to_initial_position();
}

void MainWindow::show(std::vector<StoredRule> rules, std::vector<StoredSetting> settings,
                      const std::vector<StoredCalendar>& calendars) {
  ScheduleData data = schedule_data(rules, settings, calendars);
  status_->show_rule_count(rules.size());
  showing_ = true;
  settings_->show(std::move(settings), rules);
  rules_->show(std::move(rules));
  showing_ = false;
  schedule_->show_data(std::move(data));
  show_selected();
}

void MainWindow::show_nothing() {
  status_->show_rule_count(0);
  showing_ = true;
  settings_->show({}, {});
  rules_->show({});
  showing_ = false;
  schedule_->forget_data();
}

void MainWindow::reset_menu() {
  base::Menu menu(load_menu(IDR_MAIN_MENU));
  base::Menu old(GetMenu(handle()));
  if (!menu || !SetMenu(handle(), menu.get())) {
    old.detach();
    base::throw_last_failure();
  }
  menu.detach();
}

void MainWindow::post(std::function<void()> task) {
  posted_.push_back(std::move(task));
  PostMessageW(handle(), run_posted_message, 0, 0);
}

bool MainWindow::try_show_box(const std::wstring& message, UINT icon) {
  HWND owner = GetLastActivePopup(handle());
  if (!owner || !IsWindowEnabled(owner)) return false;
  MessageBoxW(owner, message.c_str(), text(IDS_TITLE).c_str(), MB_OK | icon);
  return true;
}

bool MainWindow::ask(const std::wstring& question) {
  return MessageBoxW(GetLastActivePopup(handle()), question.c_str(), text(IDS_TITLE).c_str(),
                     MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

LRESULT MainWindow::handle_message(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
      return on_create();
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) lay_out();
      return 0;
    case WM_GETMINMAXINFO:
      return on_min_max(*reinterpret_cast<MINMAXINFO*>(lparam));
    case WM_DPICHANGED:
      return on_dpi_changed(LOWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
    case WM_SETTINGCHANGE:
      use_resolution(dpi_);
      return 0;
    case WM_ACTIVATE:
      return on_activate(LOWORD(wparam) != WA_INACTIVE);
    case WM_INITMENUPOPUP:
      update_menu(reinterpret_cast<HMENU>(wparam));
      return 0;
    case WM_SETFOCUS:
      SetFocus(last_focus_);
      return 0;
    case WM_COMMAND:
      return on_command(LOWORD(wparam));
    case WM_NOTIFY:
      return on_notify(*reinterpret_cast<NMHDR*>(lparam));
    case WM_MENUSELECT:
      return on_menu_select(wparam, lparam);
    case WM_SETCURSOR:
      return set_splitter_cursor() ? TRUE : default_treatment(message, wparam, lparam);
    case WM_LBUTTONDOWN:
      return on_button_down(point_of(lparam));
    case WM_MOUSEMOVE:
      return on_mouse_move(point_of(lparam));
    case WM_LBUTTONUP:
      ReleaseCapture();
      return 0;
    case WM_CAPTURECHANGED:
      drag_.reset();
      return 0;
    case WM_TIMER:
      events_.on_timer();
      return 0;
    case run_posted_message:
      run_posted();
      return 0;
    case drop_input_message:
      drop_input(static_cast<DWORD>(wparam));
      return 0;
    case WM_CLOSE:
      return on_close();
    case WM_ENDSESSION:
      if (wparam) events_.may_close();
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return default_treatment(message, wparam, lparam);
  }
}

void MainWindow::message_failed() noexcept try {
  if (status_) status_->show_message(describe_caught_exception());
} catch (...) {
  // Without memory for the message there is none.
}

LRESULT MainWindow::on_create() {
  rules_.emplace(handle());
  settings_.emplace(handle());
  schedule_.emplace(handle(), IDC_SCHEDULE_PANE, local_today());
  status_.emplace(handle(), IDC_STATUS_BAR);
  last_focus_ = rules_->list();
  use_resolution(static_cast<int>(GetDpiForWindow(handle())));
  SetTimer(handle(), clock_timer, clock_period_ms, nullptr);
  return 0;
}

LRESULT MainWindow::on_command(WORD id) {
  switch (id) {
    case IDM_OPEN_RULE:
      open_rule(rules_->focused_row());
      return 0;
    case IDM_EXIT:
      SendMessageW(handle(), WM_CLOSE, 0, 0);
      return 0;
    case IDM_REFRESH:
      events_.refresh();
      return 0;
    case IDM_NEXT_PANE:
    case IDM_PREVIOUS_PANE:
      focus_next({rules_->list(), settings_->list(), schedule_->list()}, id == IDM_PREVIOUS_PANE);
      return 0;
    case IDM_NEXT_CONTROL:
    case IDM_PREVIOUS_CONTROL:
      focus_next(focus_order(), id == IDM_PREVIOUS_CONTROL);
      return 0;
    case IDM_ABOUT:
      events_.about();
      return 0;
    case IDM_OPEN_STORE:
      events_.open_store();
      return 0;
    default:
      if (id >= IDM_FIRST_RECENT_STORE && id <= IDM_LAST_RECENT_STORE)
        events_.open_recent_store(static_cast<std::size_t>(id - IDM_FIRST_RECENT_STORE));
      if (id >= IDM_FIRST_SCHEDULE_COMMAND && id <= IDM_LAST_SCHEDULE_COMMAND) events_.run_schedule_command(id);
      if (id >= CommandTargets::first_id && id <= CommandTargets::last_id) events_.run_command(id);
      return 0;
  }
}

LRESULT MainWindow::on_notify(NMHDR& notification) {
  follow_selection(notification.idFrom, notification.code);
  switch (notification.idFrom) {
    case IDC_RULES:
      if (notification.code == NM_DBLCLK) open_rule(reinterpret_cast<const NMITEMACTIVATE&>(notification).iItem);
      if (notification.code == NM_RETURN) open_rule(rules_->focused_row());
      return rules_->notify(notification);
    case IDC_SETTINGS:
      if (notification.code == NM_DBLCLK || notification.code == NM_RETURN)
        events_.run_schedule_command(IDM_EDIT_SETTING);
      return settings_->notify(notification);
    default:
      return 0;
  }
}

LRESULT MainWindow::on_menu_select(WPARAM wparam, LPARAM lparam) {
  const UINT flags = HIWORD(wparam);
  constexpr UINT menu_closed = 0xFFFF;
  const auto menu = reinterpret_cast<HMENU>(lparam);
  if (flags == menu_closed || !menu) {
    status_->show_hint({});
  } else if (flags & MF_POPUP) {
    status_->show_hint(events_.hint(GetSubMenu(menu, LOWORD(wparam))));
  }
  return 0;
}

LRESULT MainWindow::on_min_max(MINMAXINFO& limits) {
  if (!status_) return 0;
  const SIZE client = least_client_size(metrics());
  RECT frame{0, 0, client.cx, client.cy};
  AdjustWindowRectExForDpi(&frame, WS_OVERLAPPEDWINDOW, TRUE, 0, static_cast<UINT>(dpi_));
  limits.ptMinTrackSize = {frame.right - frame.left, frame.bottom - frame.top};
  return 0;
}

LRESULT MainWindow::on_dpi_changed(WORD dpi, const RECT& suggested) {
  use_resolution(dpi);
  SetWindowPos(handle(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  return 0;
}

bool MainWindow::set_splitter_cursor() {
  POINT cursor{};
  GetCursorPos(&cursor);
  ScreenToClient(handle(), &cursor);
  const FrameLayout frame = layout();
  const bool rows = PtInRect(&frame.splitter, cursor);
  if (!rows && !PtInRect(&frame.column_splitter, cursor)) return false;
  SetCursor(LoadCursorW(nullptr, rows ? IDC_SIZENS : IDC_SIZEWE));
  return true;
}

LRESULT MainWindow::on_button_down(POINT cursor) {
  const FrameLayout frame = layout();
  if (PtInRect(&frame.splitter, cursor)) {
    SetCapture(handle());
    drag_ = {.columns = false, .offset = cursor.y - frame.splitter.top};
  } else if (PtInRect(&frame.column_splitter, cursor)) {
    SetCapture(handle());
    drag_ = {.columns = true, .offset = cursor.x - frame.column_splitter.left};
  }
  return 0;
}

LRESULT MainWindow::on_mouse_move(POINT cursor) {
  if (!drag_) return 0;
  if (drag_->columns) {
    splits_.columns = column_split_for(cursor.x - drag_->offset, client_size(), metrics());
  } else {
    splits_.rows = split_for(cursor.y - drag_->offset, client_size(), metrics());
  }
  lay_out();
  return 0;
}

LRESULT MainWindow::on_close() {
  if (events_.may_close()) DestroyWindow(handle());
  return 0;
}

void MainWindow::use_resolution(int dpi) {
  dpi_ = dpi;
  base::Font font = message_font(dpi);
  rules_->use_font(font.get(), dpi);
  settings_->use_font(font.get(), dpi);
  schedule_->use_font(font.get(), dpi);
  status_->use_font(font.get());
  font_ = std::move(font);
  lay_out();
}

void MainWindow::move_to_initial_position() {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(handle(), MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT bounds = centered(monitor.rcWork, {MulDiv(first_size.cx, dpi_, USER_DEFAULT_SCREEN_DPI),
                                                MulDiv(first_size.cy, dpi_, USER_DEFAULT_SCREEN_DPI)});
  SetWindowPos(handle(), nullptr, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::lay_out() {
  status_->follow_parent(client_size().cx, dpi_);
  const FrameLayout frame = layout();
  HDWP batch = BeginDeferWindowPos(5);
  batch = defer(batch, rules_->heading(), frame.rules_heading);
  batch = defer(batch, rules_->list(), frame.rules);
  batch = defer(batch, settings_->heading(), frame.settings_heading);
  batch = defer(batch, settings_->list(), frame.settings);
  batch = defer(batch, schedule_->handle(), frame.schedule);
  if (batch) EndDeferWindowPos(batch);
}

void MainWindow::open_rule(int row) {
  if (const long number = rules_->number_at(row)) events_.open_rule(number);
}

void MainWindow::run_posted() {
  if (posted_.empty()) return;
  const auto task = std::move(posted_.front());
  posted_.pop_front();
  task();
}

/// The windows that take the keyboard focus, in the order of the Tab key.
std::vector<HWND> MainWindow::focus_order() const {
  std::vector<HWND> order{rules_->list(), settings_->list()};
  for (HWND window : schedule_->focus_order()) order.push_back(window);
  return order;
}

/// Moves the focus to the window after the one that has it.
void MainWindow::focus_next(std::vector<HWND> order, bool backwards) {
  if (backwards) std::ranges::reverse(order);
  HWND focus = GetFocus();
  const auto current =
      std::ranges::find_if(order, [&](HWND window) { return window == focus || IsChild(window, focus); });
  SetFocus(current == order.end() || current + 1 == order.end() ? order.front() : *(current + 1));
}

/// Remembers the focused control when another window is activated, and focuses it again afterwards.
LRESULT MainWindow::on_activate(bool active) {
  if (active) {
    SetFocus(last_focus_);
  } else if (HWND focus = GetFocus(); IsChild(handle(), focus)) {
    last_focus_ = focus;
  }
  return 0;
}

/// The schedule is that of the list that had the focus last.
void MainWindow::follow_selection(UINT_PTR list, UINT code) {
  if (list != IDC_RULES && list != IDC_SETTINGS) return;
  const bool is_setting = list == IDC_SETTINGS;
  if (code == NM_SETFOCUS) setting_is_subject_ = is_setting;
  const bool selected = code == LVN_ITEMCHANGED && is_setting == setting_is_subject_;
  if (!showing_ && (code == NM_SETFOCUS || selected)) show_selected();
}

void MainWindow::show_selected() {
  if (setting_is_subject_) {
    schedule_->select_setting(focused_setting());
  } else {
    schedule_->select_rule(focused_rule());
  }
}

void MainWindow::update_menu(HMENU menu) {
  if (const UINT first = GetMenuItemID(menu, 0); first >= IDM_NO_RECENT_STORE && first <= IDM_LAST_RECENT_STORE)
    return fill_recent_stores(menu);
  const auto enable = [&](UINT id, bool enabled) { EnableMenuItem(menu, id, enabled ? MF_ENABLED : MF_GRAYED); };
  enable(IDM_EDIT_SETTING, focused_setting() != 0);
  enable(IDM_DELETE_SETTING, focused_setting() != 0);
  for (const UINT id : {IDM_COPY_SCHEDULE, IDM_EXPORT_CSV, IDM_EXPORT_ICALENDAR, IDM_EXPORT_HTML})
    enable(id, !schedule_->schedule().lines.empty());
  enable(IDM_CHANGES, focused_rule() != 0);
  enable(IDM_DISMISS, schedule_->compares());
  CheckMenuItem(menu, IDM_ESTIMATES, schedule_->shows_estimates() ? MF_CHECKED : MF_UNCHECKED);
}

void MainWindow::fill_recent_stores(HMENU menu) const {
  while (DeleteMenu(menu, 0, MF_BYPOSITION)) continue;
  UINT id = IDM_FIRST_RECENT_STORE;
  for (const std::wstring& store : events_.recent_stores()) {
    std::wstring caption = L"&" + std::to_wstring(id - IDM_FIRST_RECENT_STORE + 1) + L" ";
    for (const wchar_t unit : store) caption.append(unit == L'&' ? 2 : 1, unit);
    AppendMenuW(menu, MF_STRING, id++, caption.c_str());
  }
  if (id == IDM_FIRST_RECENT_STORE)
    AppendMenuW(menu, MF_STRING | MF_GRAYED, IDM_NO_RECENT_STORE, text(IDS_NO_RECENT_STORE).c_str());
}

SIZE MainWindow::client_size() const {
  RECT client{};
  GetClientRect(handle(), &client);
  return {client.right, client.bottom};
}

FrameMetrics MainWindow::metrics() const { return frame_metrics(dpi_, status_->height()); }

FrameLayout MainWindow::layout() const { return lay_out_frame(client_size(), splits_, metrics()); }

}  // namespace workbench
