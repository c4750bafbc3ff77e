#include "ScheduleCommands.h"

#include <comdef.h>

#include <algorithm>
#include <utility>

#include "ChangesDialog.h"
#include "CheckDialog.h"
#include "Clipboard.h"
#include "FindDialog.h"
#include "ICalendar.h"
#include "ProgressDialog.h"
#include "ScheduleConversion.h"
#include "ScheduleExport.h"
#include "ScheduleRecords.h"
#include "SettingDialog.h"
#include "SettingEditor.h"
#include "StoreMessages.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

/// As many of the mistakes, each with its line, as a box can show.
std::wstring format_mistakes(const std::vector<schedule::Mistake>& mistakes) {
  constexpr size_t most_lines = 10;
  std::wstring words;
  for (size_t i = 0; i < std::min(most_lines, mistakes.size()); ++i) words += format_mistake(mistakes[i]) + L"\n";
  return mistakes.size() > most_lines ? words + L"..." : words;
}

}  // namespace

ScheduleCommands::ScheduleCommands(RuleStore& store, MainWindow& window, FileDialogs files,
                                   std::function<void(long)> open_rule)
    : store_(store), window_(window), files_(std::move(files)), open_rule_(std::move(open_rule)) {}

void ScheduleCommands::run(UINT id) {
  run_guarded([&] { dispatch(id); });
}

void ScheduleCommands::offer_calendars(const ShippedCalendars& shipped) {
  run_guarded([&] {
    const auto wants = [&](const std::vector<schedule::Calendar>& newer) {
      CalendarDialog dialog(load_named(store_), newer, text(IDS_NEWER_CALENDARS));
      return dialog.run(window_.handle()) == IDOK;
    };
    offer_newer_calendars(store_, wants, shipped);
  });
}

void ScheduleCommands::run_guarded(const std::function<void()>& command) {
  try {
    command();
  } catch (const StoreError& error) {
    window_.show_message(store_message(error));
    window_.try_show_box(store_failure(error, nullptr), MB_ICONERROR);
  } catch (const schedule::Cancelled&) {
    window_.show_message(text(IDS_CANCELLED));
  } catch (const _com_error&) {
    window_.show_message(describe_caught_exception());
  }
}

void ScheduleCommands::dispatch(UINT id) {
  switch (id) {
    case IDM_ADD_SETTING:
      edit_setting(0);
      return;
    case IDM_EDIT_SETTING:
      if (const long number = window_.focused_setting()) edit_setting(number);
      return;
    case IDM_DELETE_SETTING:
      if (const long number = window_.focused_setting()) delete_setting(number);
      return;
    case IDM_COPY_SCHEDULE:
      copy_schedule();
      return;
    case IDM_EXPORT_CSV:
    case IDM_EXPORT_ICALENDAR:
    case IDM_EXPORT_HTML:
      export_schedule(id);
      return;
    case IDM_ESTIMATES:
      window_.schedule().toggle_estimates();
      return;
    case IDM_DISMISS:
      window_.schedule().dismiss_comparison();
      return;
    case IDM_CHECK_DATES:
      check_dates();
      return;
    case IDM_FIND_RULE:
      find_rule();
      return;
    case IDM_IMPORT_CALENDAR:
      import_calendar();
      return;
    case IDM_CHANGES:
      if (const long number = window_.focused_rule()) show_changes(number);
      return;
    default:
      return;
  }
}

StoredSetting ScheduleCommands::load_setting(long number) {
  const std::vector<StoredSetting> settings = store_.load_settings();
  const auto found = std::ranges::find(settings, number, &StoredSetting::number);
  if (found == settings.end()) throw setting_not_found(number);
  return *found;
}

void ScheduleCommands::edit_setting(long number) {
  SettingEditor editor(store_, number == 0 ? StoredSetting() : load_setting(number));
  SettingDialog::Choices choices;
  for (const StoredRule& stored : store_.load_rules()) choices.rules.push_back(stored.rule.name);
  for (const StoredCalendar& stored : store_.load_calendars())
    choices.calendars.push_back(from_schedule_text(stored.calendar.name));
  SettingDialog dialog(editor.setting(), std::move(choices),
                       [&](const SymbolSourceSetting& entered) { return editor.save(entered); });
  if (dialog.run(window_.handle()) == IDOK) window_.show_message(text(IDS_SETTING_SAVED));
}

void ScheduleCommands::delete_setting(long number) {
  const StoredSetting stored = load_setting(number);
  if (!window_.ask(text(IDS_DELETE_SETTING, {stored.setting.name}))) return;
  store_.delete_setting(number, stored.revision);
  window_.show_message(text(IDS_SETTING_DELETED, {stored.setting.name}));
}

void ScheduleCommands::copy_schedule() {
  if (window_.schedule().schedule().lines.empty()) return;
  std::wstring copied;
  {
    ProgressDialog progress(window_.handle());
    copied = schedule_text(window_.schedule().schedule(), progress.progress());
  }
  window_.show_message(text(try_copy(window_.handle(), copied) ? IDS_COPIED : IDS_NOT_COPIED));
}

void ScheduleCommands::export_schedule(UINT id) {
  if (window_.schedule().schedule().lines.empty()) return;
  const ExportFormat& format = export_format(id);
  const auto path = files_.ask_to_save(window_.handle(), format.kind);
  if (!path) return;
  const bool written = write_schedule(format, *path);
  const std::wstring message = text(written ? IDS_EXPORTED : IDS_NOT_EXPORTED, {path->wstring()});
  window_.show_message(message);
  if (!written) window_.try_show_box(message, MB_ICONERROR);
}

bool ScheduleCommands::write_schedule(const ExportFormat& format, const std::filesystem::path& path) {
  ProgressDialog dialog(window_.handle());
  const schedule::Progress progress = dialog.progress();
  const SchedulePane& pane = window_.schedule();
  // Copies, since the pane may follow a change of the store while the progress is shown.
  const ScheduleChoice choice = pane.choice();
  const Schedule schedule =
      format.is_of_a_year ? pane.schedule_of_year(schedule::part_of(progress, 0, 30)) : pane.schedule();
  const std::string bytes = format.write(schedule, choice, local_today(), schedule::part_of(progress, 30, 90));
  return try_write_file(path, bytes, schedule::part_of(progress, 90, 100));
}

void ScheduleCommands::check_dates() {
  const ScheduleData data = window_.schedule().data();
  CheckDialog(data, files_).run(window_.handle());
}

void ScheduleCommands::find_rule() {
  const ScheduleData data = window_.schedule().data();
  StoredRule stored;
  FindDialog dialog(data, files_, [&](const Rule& rule) {
    try {
      stored = store_.add_rule(rule);
      return std::wstring();
    } catch (const StoreError& error) {
      return store_failure(error, nullptr);
    } catch (const schedule::Cancelled&) {
      return text(IDS_CANCELLED);
    }
  });
  if (dialog.run(window_.handle()) != IDOK) return;
  window_.show_message(text(IDS_RULE_STORED, {stored.rule.name}));
  open_rule_(stored.number);
}

void ScheduleCommands::import_calendar() {
  const auto path = files_.ask_to_open(window_.handle(), {IDS_FILTER_CALENDAR, L"csv"});
  if (!path) return;
  const std::wstring name = path->filename().wstring();
  std::optional<std::string> bytes;
  std::optional<schedule::CalendarReading> reading;
  {
    ProgressDialog dialog(window_.handle());
    bytes = try_read_file(*path, schedule::part_of(dialog.progress(), 0, 50));
    const bool events =
        schedule::has_ending(to_schedule_text(name), ".ics") || (bytes && schedule::is_icalendar(*bytes));
    if (bytes && !events) reading = schedule::read_calendar(*bytes, schedule::part_of(dialog.progress(), 50, 100));
  }
  if (!bytes) {
    window_.try_show_box(text(IDS_FILE_NOT_READ, {path->wstring()}), MB_ICONERROR);
    return;
  }
  if (!reading) return run_import({load_named(store_), *bytes, text(IDS_EVENTS_QUESTION, {name})});
  if (reading->calendar) {
    return run_import({load_named(store_), std::vector{*reading->calendar}, text(IDS_CALENDAR_QUESTION, {name})});
  }
  window_.try_show_box(text(IDS_CALENDAR_NOT_READ, {name, format_mistakes(reading->mistakes)}), MB_ICONERROR);
}

void ScheduleCommands::show_changes(long number) {
  const std::optional<StoredRule> stored = store_.try_load_rule(number);
  if (!stored) throw rule_not_found(number);
  ChangesDialog(stored->rule.name, store_.load_changes(number)).run(window_.handle());
}

void ScheduleCommands::run_import(CalendarDialog&& dialog) {
  if (dialog.run(window_.handle()) != IDOK) return;
  const schedule::Calendar& calendar = dialog.calendars().front();
  store_.replace_calendars({{calendar, schedule::shipped_calendars_version}});
  window_.show_message(text(IDS_CALENDAR_IMPORTED, {from_schedule_text(calendar.name)}));
}

}  // namespace workbench
