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
#include "RuleText.h"
#include "ShippedUpdate.h"
#include "SqliteRuleStore.h"
#include "StoreMessages.h"
#include "TextEncoding.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "UserSettings.h"
#include "resource.h"

namespace workbench {

namespace {

using schedule::ExitCode;

/// Reports why the program ends: in a box when it was about to open its window, else where it was started from.
void tell(const std::wstring& message, CommandLine::Action action) {
  const bool written = write_error(message + L"\n");
  if (action == CommandLine::Action::run || !written)
    MessageBoxW(nullptr, message.c_str(), text(IDS_TITLE).c_str(), MB_OK | MB_ICONERROR);
}

/// Shows what the user asked for: where the program was started from, else in a box.
void show(const std::wstring& message) {
  if (!write_output(message))
    MessageBoxW(nullptr, message.c_str(), text(IDS_TITLE).c_str(), MB_OK | MB_ICONINFORMATION);
}

void print_rules(RuleStore& store) {
  std::wstring lines;
  for (const std::wstring& line : rules_as_lines(store.load_rules())) lines += line + L"\n";
  write_output(lines);
}

/// A failure here is reported when the panes read the store.
void offer_calendars(RuleStore& store) try {
  offer_newer_calendars(store, [](const std::vector<std::string>& names) {
    std::wstring lines;
    for (const std::string& name : names) lines += L"\n" + base::from_utf8(name);
    return MessageBoxW(nullptr, text(IDS_NEWER_CALENDARS, {lines}).c_str(), text(IDS_TITLE).c_str(),
                       MB_YESNO | MB_ICONQUESTION) == IDYES;
  });
} catch (const StoreError& error) {
  write_error(store_message(error) + L"\n");
}

void run_window(const CommandLine& line, std::shared_ptr<RuleStore> store, const std::wstring& store_path) {
  const INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  make_settings_key();
  offer_calendars(*store);
  Application application(std::move(store), store_path);
  application.load_plugin(line.module);
  application.run(line.shown_rule);
}

ExitCode run(const CommandLine& line) {
  try {
    const std::filesystem::path path = line.store.empty() ? default_store() : std::filesystem::absolute(line.store);
    const std::shared_ptr<RuleStore> store = open_sqlite_store(path, {.first_content = first_content()});
    if (line.action == CommandLine::Action::print_rules) {
      print_rules(*store);
    } else {
      run_window(line, store, path.wstring());
    }
    return schedule::done;
  } catch (const StoreError& error) {
    tell(text(IDS_STORE_NOT_OPENED, {store_message(error)}), line.action);
    return schedule::unusable_file;
  } catch (const _com_error& error) {
    tell(text(IDS_NOT_STARTED, {describe(error.Error())}), line.action);
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
    tell(text(error.message, {error.argument}), CommandLine::Action::help);
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
