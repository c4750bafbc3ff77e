#pragma once

#include <functional>

#include "CalendarDialog.h"
#include "Files.h"
#include "MainWindow.h"
#include "RuleStore.h"
#include "ScheduleExport.h"
#include "ShippedUpdate.h"

namespace workbench {

/// The commands about settings, dates and the changes of rules: they show their dialogs and update the schedule.
class ScheduleCommands {
 public:
  /// `open_rule` opens a rule of the store in the editor.
  ScheduleCommands(RuleStore& store, MainWindow& window, FileDialogs files, std::function<void(long)> open_rule);

  /// Runs one of the commands from IDM_FIRST_SCHEDULE_COMMAND to IDM_LAST_SCHEDULE_COMMAND. What the store refuses is
  /// shown to the user.
  void run(UINT id);

  /// Offers the shipped calendars that are newer than those of the store, once for each version, and shows first what
  /// changes with them.
  void offer_calendars(const ShippedCalendars& shipped = {});

 private:
  void run_guarded(const std::function<void()>& command);
  void dispatch(UINT id);
  StoredSetting load_setting(long number);
  void edit_setting(long number);
  void delete_setting(long number);
  void copy_schedule();
  void export_schedule(UINT id);
  bool write_schedule(const ExportFormat& format, const std::filesystem::path& path);
  void check_dates();
  void find_rule();
  void import_calendar();
  void show_changes(long number);
  void run_import(CalendarDialog&& dialog);

  RuleStore& store_;
  MainWindow& window_;
  FileDialogs files_;
  std::function<void(long)> open_rule_;
};

}  // namespace workbench
