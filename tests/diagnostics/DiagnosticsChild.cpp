// The child process of the tests: runs the function that its first argument names and writes what it saw to its
// standard output. It lies in a folder of its own, where no diagnostics library is found by name.
#include <windows.h>
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "DialogDriver.h"
#include "ImportProbe.h"
#include "Owned.h"
#include "Recorder.h"
#include "RegistrySandbox.h"
#include "Report.h"
#include "Reporters.h"
#include "SnagtrapClient.h"
#include "WindowText.h"

extern "C" NTSYSAPI BOOLEAN NTAPI RtlDllShutdownInProgress();
ZD_IMPORT_PROBE(InitializeCriticalSectionAndSpinCount, SectionProbe);
ZD_IMPORT_PROBE(RtlDllShutdownInProgress, ShutdownProbe);

namespace {

using namespace SnagtrapUtil;
using test_support::Recorder;

constexpr SourceLocation location{"Child.cpp", 1, "role", "int role()"};
constexpr wchar_t library_name[] = L"SnagtrapUtil3.0_x64.dll";

std::wstring argument(int index) { return index < __argc ? __wargv[index] : L""; }

void say(const char* name, const std::wstring& value) { std::printf("%s=%ls\n", name, value.c_str()); }

void say(const char* name, HRESULT value) { std::printf("%s=%08lx\n", name, static_cast<unsigned long>(value)); }

void say_all_reports() {
  say("assertion", AsserterClass(location).assert_failed(L"x"));
  say("error", ShowError(location).show(L"x"));
  say("trace", TracerClass(location).trace(L"x"));
  say("structured exception", report_structured_exception(nullptr));
  say("went on", expect(false, L"x", location) ? L"no" : L"yes");
}

void describe_box(HWND box) {
  const HWND icon = FindWindowExW(box, nullptr, L"Static", nullptr);
  say("caption", base::window_text(box));
  say("text", test_support::item_text(box, 0xFFFF));
  say("owner", GetWindow(box, GW_OWNER) ? L"some" : L"none");
  const auto shown = reinterpret_cast<HICON>(SendMessageW(icon, STM_GETICON, 0, 0));
  say("icon", shown && shown == LoadIconW(nullptr, IDI_ERROR) ? L"error" : L"another");
}

/// Reports without a library; closes and counts the message boxes that open.
int report_without_library() {
  test_support::DialogDriver driver([](HWND box) {
    describe_box(box);
    PostMessageW(box, WM_CLOSE, 0, 0);
  });
  say_all_reports();
  say("boxes", std::to_wstring(driver.dialogs()));
  return 0;
}

/// Reports again, from the thread that shows the box and from others, while the box is up.
int report_during_the_box() {
  test_support::DialogDriver driver([](HWND box) {
    say("same thread", AsserterClass(location).assert_failed(L"x"));
    std::thread other([] { say("other thread", AsserterClass(location).assert_failed(L"x")); });
    other.join();
    PostMessageW(box, WM_CLOSE, 0, 0);
  });
  say("first", AsserterClass(location).assert_failed(L"x"));
  say("boxes", std::to_wstring(driver.dialogs()));
  return 0;
}

/// Lets the client look for the library, with the folder of the second argument in the search path.
int find_library() {
  if (!argument(2).empty()) SetDllDirectoryW(argument(2).c_str());
  say("initialised", snagtrap_client().ensure_initialised() ? L"yes" : L"no");
  return 0;
}

/// Lets the client look for the library while the file of the second argument is loaded.
int find_loaded_library() {
  const HMODULE library = LoadLibraryW(argument(2).c_str());
  say("loaded", library && GetModuleHandleW(library_name) == library ? L"yes" : L"no");
  return find_library();
}

/// The recorder at the second argument, with its journal in the file of the third.
class JournalingRecorder : public Recorder {
 public:
  JournalingRecorder() : Recorder(argument(2)) { journal(argument(3)); }
};

int abort_at_an_assertion() {
  JournalingRecorder recorder;
  recorder.set_result(L"PROCESS", E_ABORT);
  expect(false, L"x", location);
  say("reached", L"the line behind the assertion");
  return 0;
}

int abort_at_an_exception() {
  JournalingRecorder recorder;
  recorder.set_result(L"PROCESS", E_ABORT);
  try {
    throw 1;
  } catch (...) {
    catch_and_call(location);
  }
  say("reached", L"the line behind the report");
  return 0;
}

int abort_before_initialisation() {
  JournalingRecorder recorder;
  react(E_ABORT);
  return 0;
}

int abort_without_library() {
  react(E_ABORT);
  return 0;
}

int terminate_by_command() {
  JournalingRecorder recorder;
  snagtrap_client().ensure_initialised();
  snagtrap_client().terminate();
}

/// The client is destroyed while the recorder still lives.
int end_orderly() {
  JournalingRecorder recorder;
  expect(false, L"x", location);
  std::exit(0);
}

/// The same when the system has begun to detach the modules of the process.
int end_with_the_process() {
  JournalingRecorder recorder;
  expect(false, L"x", location);
  ShutdownProbe shutdown;
  shutdown.replace([]() -> BOOLEAN { return TRUE; });
  std::exit(0);
}

int first_report() {
  Recorder recorder(argument(2));
  SetLastError(4321);
  expect(false, L"x", location);
  say("last error", static_cast<HRESULT>(GetLastError()));
  say("carried", test_support::field_text(recorder.processed(L"ASSERT").at(0), L"Last Error Code"));
  return 0;
}

int get_the_client() {
  Recorder recorder(argument(2));
  snagtrap_client();
  say("commands", std::to_wstring(recorder.commands().size()));
  return 0;
}

/// Reports while the client cannot be created, and once more when it can.
int report_without_client() {
  Recorder recorder(argument(2));
  {
    SectionProbe section;
    section.fail(0, FALSE);
    expect(false, L"lost", location);
    report_hresult(E_FAIL, location);
    say("commands", std::to_wstring(recorder.commands().size()));
  }
  expect(false, L"kept", location);
  say("reports", std::to_wstring(recorder.commands(L"PROCESS").size()));
  return 0;
}

/// Several threads send the first report of the process at once.
int first_reports_of_many_threads() {
  constexpr std::size_t thread_count = 8;
  Recorder recorder(argument(2));
  const base::KernelHandle start(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < thread_count; ++i) {
    threads.emplace_back([&] {
      WaitForSingleObject(start.get(), INFINITE);
      expect(false, L"x", location);
    });
  }
  SetEvent(start.get());
  for (std::thread& thread : threads) thread.join();

  say("ST_InitObject", std::to_wstring(recorder.commands(L"ST_InitObject").size()));
  say("INIT", std::to_wstring(recorder.commands(L"INIT").size()));
  say("Configure", std::to_wstring(recorder.commands(L"Configure").size()));
  const auto reports = recorder.processed(L"ASSERT");
  std::vector<DWORD> reporters;
  for (const auto& report : reports) {
    if (test_support::field_text(report, L"Thread ID") == std::to_wstring(report.thread)) {
      reporters.push_back(report.thread);
    }
  }
  std::sort(reporters.begin(), reporters.end());
  reporters.erase(std::unique(reporters.begin(), reporters.end()), reporters.end());
  say("reports", std::to_wstring(reports.size()));
  say("threads", std::to_wstring(reporters.size()));
  say("complete", reports.front().fields.size() == reports.back().fields.size() ? L"yes" : L"no");
  return 0;
}

struct Role {
  const wchar_t* name;
  int (*play)();
};

constexpr Role roles[] = {
    {L"report without library", report_without_library},
    {L"report during the box", report_during_the_box},
    {L"find library", find_library},
    {L"find loaded library", find_loaded_library},
    {L"abort at an assertion", abort_at_an_assertion},
    {L"abort at an exception", abort_at_an_exception},
    {L"abort before initialisation", abort_before_initialisation},
    {L"abort without library", abort_without_library},
    {L"terminate by command", terminate_by_command},
    {L"end orderly", end_orderly},
    {L"end with the process", end_with_the_process},
    {L"first report", first_report},
    {L"get the client", get_the_client},
    {L"report without client", report_without_client},
    {L"first reports of many threads", first_reports_of_many_threads},
};

}  // namespace

int wmain() {
  constexpr int no_such_role = 2;
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  _setmode(_fileno(stdout), _O_BINARY);
  test_support::join_registry_sandbox();
  for (const Role& role : roles) {
    if (argument(1) == role.name) return role.play();
  }
  return no_such_role;
}
