#include "Program.h"

#include <windows.h>
#include <comdef.h>
#include <commctrl.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "Application.h"
#include "CommandLine.h"
#include "Console.h"
#include "ConsoleCommand.h"
#include "FirstContent.h"
#include "LibrarySearch.h"
#include "PasswordDialog.h"
#include "PasswordPrompt.h"
#include "RuleText.h"
#include "StoreLocation.h"
#include "StoreMessages.h"
#include "TextEncoding.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "UserSettings.h"
#include "WaitBox.h"
#include "resource.h"

namespace workbench {

namespace {

using schedule::ExitCode;

/// Reports why the program ends: in a box when it was about to open its window, else where it was started from.
void report_error(const std::wstring& message, CommandLine::Action action) {
  const bool written = write_error(message + L"\n");
  if (action == CommandLine::Action::run || !written)
    MessageBoxW(nullptr, message.c_str(), text(IDS_TITLE).c_str(), MB_OK | MB_ICONERROR);
}

/// Shows what the user asked for: where the program was started from, else in a box.
void show(const std::wstring& message) {
  if (!write_output(message))
    MessageBoxW(nullptr, message.c_str(), text(IDS_TITLE).c_str(), MB_OK | MB_ICONINFORMATION);
}

/// Returns whether all lines could be written. It creates no store: reading must not leave one behind.
bool print_rules(StoreLocation& location) {
  ConsoleProgress progress;
  const auto store = location.open({.first_content = first_content(),
                                    .may_create = false,
                                    .ask_password = &ask_at_console,
                                    .progress = progress.part(0, 50)});
  store->set_progress(progress.same());
  std::wstring lines;
  for (const std::wstring& line : rules_as_lines(store->load_rules())) lines += line + L"\n";
  return write_output(lines, progress.output_part(50, 100));
}

OpenedStore open_in_window(StoreLocation& location) {
  return open_store(location, {.first_content = first_content(),
                               .ask_password = [](const auto& request) { return ask_in_dialog(nullptr, request); },
                               .progress = wait_for_file(location.description()),
                               .in_window = true});
}

void run_window(const CommandLine& line, StoreLocation& location) {
  const INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  OpenedStore store = open_in_window(location);
  create_settings_key();
  Application application(std::move(store));
  application.load_plugin(line.module);
  application.run(line.shown_rule);
}

ExitCode run(const CommandLine& line) {
  try {
    const std::unique_ptr<StoreLocation> location =
        find_store(line.store.empty() ? default_store().wstring() : line.store);
    if (line.action != CommandLine::Action::run)
      return print_rules(*location) ? schedule::done : schedule::unusable_file;
    run_window(line, *location);
    return schedule::done;
  } catch (const StoreError& error) {
    report_error(text(IDS_STORE_NOT_OPENED, {store_message(error)}), line.action);
    return schedule::unusable_file;
  } catch (const StoreLocationError& error) {
    report_error(text(IDS_STORE_NOT_OPENED, {error.message}), line.action);
    return schedule::unusable_file;
  } catch (const schedule::Cancelled&) {
    return schedule::not_started;
  } catch (const _com_error& error) {
    report_error(text(IDS_NOT_STARTED, {describe(error.Error())}), line.action);
    return schedule::not_started;
  }
}

ExitCode run_arguments(const std::vector<std::wstring>& arguments) {
  try {
    choose_language(try_find_language(arguments).value_or(system_language()));
    if (const std::vector<std::wstring> others = without_language(arguments); is_console_command(others))
      return run_console_command(others);
    const CommandLine line = parse_command_line(arguments);
    switch (line.action) {
      case CommandLine::Action::help:
        show(text(IDS_USAGE));
        return schedule::done;
      case CommandLine::Action::version:
        show(text(IDS_VERSION, {program_version()}));
        return schedule::done;
      default:
        return run(line);
    }
  } catch (const CommandLineError& error) {
    report_error(text(error.message, {printable_argument(error.argument, arguments)}), CommandLine::Action::help);
    return schedule::wrong_arguments;
  }
}

}  // namespace

int run_program() noexcept try {
  limit_library_search();
  const HRESULT entered = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  if (FAILED(entered)) return schedule::not_started;
  const int code = run_arguments(process_arguments());
  CoUninitialize();
  return code;
} catch (...) {
  return schedule::not_started;
}

}  // namespace workbench
