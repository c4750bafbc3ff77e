#include <windows.h>
#include <comdef.h>
#include <commctrl.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "Application.h"
#include "CommandLine.h"
#include "Console.h"
#include "FirstContent.h"
#include "LibrarySearch.h"
#include "RuleText.h"
#include "SqliteRuleStore.h"
#include "StoreMessages.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "UserSettings.h"
#include "resource.h"

namespace workbench {

namespace {

enum ExitCode { success = 0, store_failed = 1, bad_arguments = 2, not_started = 3 };

/// Tells the user why the program ends: in a box when it was about to open its window, else where it was started from.
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

void run_window(const CommandLine& line, std::shared_ptr<RuleStore> store, const std::wstring& store_path) {
  const INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  make_settings_key();
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
    return success;
  } catch (const StoreError& error) {
    tell(text(IDS_STORE_NOT_OPENED, {store_message(error)}), line.action);
    return store_failed;
  } catch (const _com_error& error) {
    tell(text(IDS_NOT_STARTED, {describe(error.Error())}), line.action);
    return not_started;
  }
}

ExitCode run_program() {
  try {
    const std::vector<std::wstring> arguments = process_arguments();
    choose_language(try_find_language(arguments).value_or(system_language()));
    const CommandLine line = parse_command_line(arguments);
    switch (line.action) {
      case CommandLine::Action::help:
        show(text(IDS_USAGE));
        return success;
      case CommandLine::Action::version:
        show(text(IDS_VERSION, {program_version()}));
        return success;
      default:
        return run(line);
    }
  } catch (const CommandLineError& error) {
    tell(text(error.message, {error.argument}), CommandLine::Action::help);
    return bad_arguments;
  }
}

}  // namespace

}  // namespace workbench

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  try {
    workbench::limit_library_search();
    const HRESULT entered = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    if (FAILED(entered)) return workbench::not_started;
    const int code = workbench::run_program();
    CoUninitialize();
    return code;
  } catch (...) {
    return workbench::not_started;
  }
}
