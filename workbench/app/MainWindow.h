#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "FrameGeometry.h"
#include "Owned.h"
#include "RulesPane.h"
#include "SchedulePane.h"
#include "SettingsPane.h"
#include "StatusBar.h"
#include "Window.h"

namespace workbench {

/// The window class of the frame.
inline constexpr wchar_t main_window_class[] = L"zdExpirationRulesWorkbench";

/// Has the frame drop the input of its thread until the time in wParam; see `drop_input`.
inline constexpr UINT drop_input_message = WM_APP + 1;

/// What the frame window asks of the program.
struct MainWindowEvents {
  std::function<void(long number)> open_rule;
  std::function<void(long id)> run_command;           ///< a command that a plug-in added
  std::function<void(UINT id)> run_schedule_command;  ///< one about settings, dates or changes
  std::function<void()> refresh;
  std::function<void()> on_timer;                   ///< every second or so, from whatever message loop runs
  std::function<std::wstring(HMENU submenu)> hint;  ///< for the status bar
  std::function<void()> about;
  std::function<bool()> may_close;  ///< prepares the end; false keeps the window open
  std::function<void()> open_store;
  std::function<void(std::size_t index)> open_recent_store;
  std::function<std::vector<std::wstring>()> recent_stores;  ///< what the menu shows for each
};

/// The frame: menu, pane of rules, splitter, pane of symbol source settings, status bar.
class MainWindow final : public Window {
 public:
  explicit MainWindow(MainWindowEvents events);

  void show(std::vector<StoredRule> rules, std::vector<StoredSetting> settings,
            const std::vector<StoredCalendar>& calendars);
  /// Shows nothing of a store. What is shown next is not compared with what was shown before.
  void show_nothing();
  /// Replaces the menu, which plug-ins have changed, with the program's own.
  void reset_menu();
  void show_message(const std::wstring& message) { status_->show_message(message); }
  void show_store(const std::wstring& path) { status_->show_store(path); }

  /// The pane with the dates of what is selected.
  SchedulePane& schedule() noexcept { return *schedule_; }
  /// The number of the setting that has the focus in its pane; 0 when there is none.
  long focused_setting() const { return settings_->number_at(settings_->focused_row()); }
  /// The same for a rule.
  long focused_rule() const { return rules_->number_at(rules_->focused_row()); }
  void focus_settings() { SetFocus(settings_->list()); }

  /// Runs a task later, from the message loop that is running then; a modal one too.
  void post(std::function<void()> task);

  /// Shows a box with this text over whatever dialog is open, and waits until it is closed. Returns false, and shows
  /// nothing, while this window is disabled but its modal dialog does not exist yet.
  bool try_show_box(const std::wstring& message, UINT icon);
  /// Asks a question with the buttons Yes and No; returns whether the user chose Yes.
  bool ask(const std::wstring& question);

 protected:
  LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;
  void message_failed() noexcept override;

 private:
  LRESULT on_create();
  LRESULT on_command(WORD id);
  LRESULT on_notify(NMHDR& notification);
  LRESULT on_menu_select(WPARAM wparam, LPARAM lparam);
  LRESULT on_min_max(MINMAXINFO& limits);
  LRESULT on_dpi_changed(WORD dpi, const RECT& suggested);
  LRESULT on_button_down(POINT cursor);
  LRESULT on_mouse_move(POINT cursor);
  LRESULT on_close();
  LRESULT on_activate(bool active);
  bool set_splitter_cursor();

  void use_resolution(int dpi);
  void move_to_initial_position();
  void lay_out();
  void open_rule(int row);
  void run_posted();
  void follow_selection(UINT_PTR list, UINT code);
  void show_selected();
  void update_menu(HMENU menu);
  void fill_recent_stores(HMENU menu) const;
  std::vector<HWND> focus_order() const;
  static void focus_next(std::vector<HWND> order, bool backwards);
  SIZE client_size() const;
  FrameMetrics metrics() const;
  FrameLayout layout() const;

  MainWindowEvents events_;
  std::optional<RulesPane> rules_;
  std::optional<SettingsPane> settings_;
  std::optional<SchedulePane> schedule_;
  std::optional<StatusBar> status_;
  base::Font font_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  FrameSplits splits_;
  /// While a splitter is dragged.
  struct Drag {
    bool columns;  ///< the splitter between the columns
    LONG offset;   ///< from the splitter's edge to the cursor
  };
  std::optional<Drag> drag_;
  bool setting_is_subject_ = false;  ///< whether the schedule is that of the selected setting, or of the rule
  bool showing_ = false;             ///< while the panes get new rows
  HWND last_focus_ = nullptr;
  std::deque<std::function<void()>> posted_;
};

}  // namespace workbench
