#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "CommandLine.h"
#include "CommandTargets.h"
#include "HostClasses.h"
#include "HotKeys.h"
#include "MainMenu.h"
#include "MainWindow.h"
#include "PluginHost.h"
#include "ProgressRuleStore.h"
#include "RuleStore.h"
#include "ScheduleCommands.h"
#include "StoreChooser.h"

namespace workbench {

/// The program behind the frame window: joins the store, the plug-in and the window. Belongs to a thread with a
/// single-threaded apartment.
class Application {
 public:
  explicit Application(OpenedStore store, FileDialogs file_dialogs = system_file_dialogs());
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application();

  HWND window() const noexcept { return window_.handle(); }

  /// Creates and initialises the plug-in. What fails is shown to the user, who can still look at the rules.
  void load_plugin(const std::filesystem::path& module);

  /// Offers newer calendars; see `ScheduleCommands`.
  void offer_calendars(const ShippedCalendars& shipped = {}) { schedule_commands_->offer_calendars(shipped); }

  /// Runs until the window is closed. A rule other than 0 is opened in the editor first.
  void run(long shown_rule);

 private:
  MainWindowEvents events();
  /// Joins the store to the window. The plug-in is not loaded.
  void connect(OpenedStore opened);
  /// The same with a plug-in that is created again, so that nothing of the present store is left anywhere.
  void change_store(OpenedStore opened);
  /// Runs a command that may change the store, unless a dialog is open.
  void run_if_idle(const std::function<void()>& command);
  void subscribe_to_store();
  /// Returns whether the store could be read; if not, the panes stay unchanged and the status bar says why.
  bool refresh_panes();
  void look_for_changes();
  void open_rule(long number);
  void run_command(long id);
  void show_about();
  bool may_close();

  /// Calls the plug-in unless a call is still on its way; `failure` returns the message for a failing HRESULT.
  template <class Call, class Failure>
  void call_plugin(const Call& call, const Failure& failure);
  HRESULT initialize_plugin();
  void unload_plugin() noexcept;

  StoreListeners store_listeners();
  /// Shows a message in the status bar at once and in a box as soon as a message loop runs.
  void show_error(const std::wstring& message);
  void show_alarms();

  CommandTargets targets_;
  MainWindow window_;
  FileDialogs file_dialogs_;
  StoreChooser chooser_;
  // Of the present store:
  std::shared_ptr<RuleStore> store_;
  std::wstring store_description_;
  StoreSubscription subscription_;
  std::optional<ProgressRuleStore> shown_store_;     ///< the same for the window's own commands
  std::shared_ptr<ProgressRuleStore> plugin_store_;  ///< the same for the plug-in, in whose calls no message may arrive
  std::optional<ScheduleCommands> schedule_commands_;
  std::shared_ptr<MainMenu> menu_;
  std::shared_ptr<HotKeys> hot_keys_;
  std::optional<HostClasses> classes_;
  std::filesystem::path module_;
  std::optional<PluginHost> plugin_;
  bool calling_plugin_ = false;
  bool refresh_posted_ = false;
  std::deque<std::wstring> alarms_;  ///< what the user must see, oldest first
  bool showing_alarms_ = false;
};

}  // namespace workbench
