#include "MainWindow.h"

#include <commctrl.h>
#include <windowsx.h>

#include <utility>

#include "CommandTargets.h"
#include "ModulePath.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr wchar_t class_name[] = L"zdExpirationRulesWorkbench";
constexpr UINT run_posted_message = WM_APP;
constexpr UINT_PTR clock_timer = 1;
constexpr UINT clock_period_ms = 1000;
constexpr SIZE first_size{860, 640};  // at 96 dpi

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

/// The children draw themselves anew instead of moving their old picture, which would take with it what lay over them.
HDWP defer(HDWP batch, HWND window, const RECT& place) {
  if (!batch) return nullptr;
  return DeferWindowPos(batch, window, nullptr, place.left, place.top, place.right - place.left,
                        place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

}  // namespace

MainWindow::MainWindow(MainWindowEvents events) : events_(std::move(events)) {
  base::Menu menu(load_menu(IDR_MAIN_MENU));
  create({.class_name = class_name,
          .title = text(IDS_TITLE).c_str(),
          .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
          .menu = menu.detach(),
          .icon = load_icon(),
          .cursor = LoadCursorW(nullptr, IDC_ARROW)});
  move_to_first_place();
}

void MainWindow::show(std::vector<StoredRule> rules, std::vector<StoredSetting> settings) {
  status_->show_rule_count(rules.size());
  settings_->show(std::move(settings), rules);
  rules_->show(std::move(rules));
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
      drag_offset_.reset();
      return 0;
    case WM_TIMER:
      events_.on_timer();
      return 0;
    case run_posted_message:
      run_posted();
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

void MainWindow::message_failed() noexcept {
  try {
    throw;
  } catch (const _com_error& error) {
    if (status_) status_->show_message(text(IDS_INTERNAL_ERROR, {describe(error.Error())}));
  } catch (...) {
    if (status_) status_->show_message(text(IDS_INTERNAL_ERROR, {describe(E_UNEXPECTED)}));
  }
}

LRESULT MainWindow::on_create() {
  rules_.emplace(handle());
  settings_.emplace(handle());
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
      focus_next_pane();
      return 0;
    case IDM_ABOUT:
      events_.about();
      return 0;
    default:
      if (id >= CommandTargets::first_id && id <= CommandTargets::last_id) events_.run_command(id);
      return 0;
  }
}

LRESULT MainWindow::on_notify(NMHDR& notification) {
  if (notification.code == NM_SETFOCUS) last_focus_ = notification.hwndFrom;
  switch (notification.idFrom) {
    case IDC_RULES:
      if (notification.code == NM_DBLCLK) open_rule(reinterpret_cast<const NMITEMACTIVATE&>(notification).iItem);
      if (notification.code == NM_RETURN) open_rule(rules_->focused_row());
      return rules_->notify(notification);
    case IDC_SETTINGS:
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
  const RECT splitter = layout().splitter;
  if (!PtInRect(&splitter, cursor)) return false;
  SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
  return true;
}

LRESULT MainWindow::on_button_down(POINT cursor) {
  const RECT splitter = layout().splitter;
  if (!PtInRect(&splitter, cursor)) return 0;
  SetCapture(handle());
  drag_offset_ = cursor.y - splitter.top;
  return 0;
}

LRESULT MainWindow::on_mouse_move(POINT cursor) {
  if (!drag_offset_) return 0;
  split_ = split_for(cursor.y - *drag_offset_, client_size(), metrics());
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
  status_->use_font(font.get());
  font_ = std::move(font);
  lay_out();
}

void MainWindow::move_to_first_place() {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(handle(), MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT place = centered(monitor.rcWork, {MulDiv(first_size.cx, dpi_, USER_DEFAULT_SCREEN_DPI),
                                               MulDiv(first_size.cy, dpi_, USER_DEFAULT_SCREEN_DPI)});
  SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::lay_out() {
  status_->follow_parent(client_size().cx, dpi_);
  const FrameLayout places = layout();
  HDWP batch = BeginDeferWindowPos(4);
  batch = defer(batch, rules_->heading(), places.rules_heading);
  batch = defer(batch, rules_->list(), places.rules);
  batch = defer(batch, settings_->heading(), places.settings_heading);
  batch = defer(batch, settings_->list(), places.settings);
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

void MainWindow::focus_next_pane() { SetFocus(GetFocus() == rules_->list() ? settings_->list() : rules_->list()); }

SIZE MainWindow::client_size() const {
  RECT client{};
  GetClientRect(handle(), &client);
  return {client.right, client.bottom};
}

FrameMetrics MainWindow::metrics() const { return frame_metrics(dpi_, status_->height()); }

FrameLayout MainWindow::layout() const { return lay_out_frame(client_size(), split_, metrics()); }

}  // namespace workbench
