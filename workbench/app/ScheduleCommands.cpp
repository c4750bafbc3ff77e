#include "ScheduleCommands.h"

#include <algorithm>
#include <utility>

#include "CheckDialog.h"
#include "Clipboard.h"
#include "FindDialog.h"
#include "ScheduleConversion.h"
#include "ScheduleExport.h"
#include "ScheduleRecords.h"
#include "SettingDialog.h"
#include "SettingEditor.h"
#include "StoreMessages.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

ScheduleCommands::ScheduleCommands(RuleStore& store, MainWindow& window, FileDialogs files,
                                   std::function<void(long)> open_rule)
    : store_(store), window_(window), files_(std::move(files)), open_rule_(std::move(open_rule)) {}

void ScheduleCommands::run(UINT id) {
  try {
    dispatch(id);
  } catch (const StoreError& error) {
    window_.show_message(store_message(error));
    window_.try_show_box(store_failure(error, nullptr), MB_ICONERROR);
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
  const std::wstring copied = schedule_text(window_.schedule().schedule());
  window_.show_message(text(try_copy(window_.handle(), copied) ? IDS_COPIED : IDS_NOT_COPIED));
}

void ScheduleCommands::export_schedule(UINT id) {
  const SchedulePane& pane = window_.schedule();
  if (pane.schedule().lines.empty()) return;
  const ExportFormat& format = export_format(id);
  const auto path = files_.ask_to_save(window_.handle(), format.kind);
  if (!path) return;
  const std::string bytes =
      format.write(format.is_of_a_year ? pane.schedule_of_year() : pane.schedule(), pane.choice(), local_today());
  const bool written = try_write_file(*path, bytes);
  const std::wstring message = text(written ? IDS_EXPORTED : IDS_NOT_EXPORTED, {path->wstring()});
  window_.show_message(message);
  if (!written) window_.try_show_box(message, MB_ICONERROR);
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
    }
  });
  if (dialog.run(window_.handle()) != IDOK) return;
  window_.show_message(text(IDS_RULE_STORED, {stored.rule.name}));
  open_rule_(stored.number);
}

}  // namespace workbench
