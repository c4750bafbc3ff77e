#include <map>
#include <set>

#include "FailingMemory.h"
#include "FailingSystem.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FailingSystem;
using testing::IsEmpty;

using Names = std::set<std::string>;

/// What no scenario calls, because only dialogs of others do or because the library of the reports is loaded here: the
/// tests in which it fails.
const std::map<std::string, const char*> failed_in_their_rooms = {
    {"BeginPaint", "resizable.MaskedGrip.DrawsNothingWithoutADcToPaintOn"},
    {"BitBlt", "resizable.MaskedGrip.DrawsNothingWhenCopyingFails"},
    {"CreateBitmap", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeMade"},
    {"CreateCompatibleBitmap", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeMade"},
    {"CreateCompatibleDC", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeMade"},
    {"FlsSetValue", "runtime.Exceptions.OfAThreadForWhichNothingCanBeKeptArrive"},
    {"GetDC", "resizable.MaskedGrip.PaintsAsTheSystemWhenItsBitmapsCannotBeMade"},
    {"HeapAlloc", "runtime.Exceptions.OfAThreadForWhichNothingCanBeKeptArrive"},
    {"LoadLibraryA", "diagnostics.LibrarySearch.FindsNothingAtARegisteredPathWithoutFile"},
    {"OffsetRgn", "resizable.EraseRegion.LeavesOutAChildWhoseRegionCannotBeMoved"},
    {"RegGetValueA", "diagnostics.LibraryMissing.ReportsDoNothingAndShowNoBox"},
    {"SelectObject", "resizable.MaskedGrip.DrawsNothingWhenItsBitmapsCannotBeSelected"},
};

/// What only asks or tells the system something about what is there, or gives something back, or whose failure is an
/// answer like any other.
const Names harmless = {
    "AcquireSRWLockExclusive",
    "AdjustWindowRectEx",
    "CallWindowProcW",
    "CloseHandle",
    "DebugBreak",
    "DefWindowProcW",
    "DeleteCriticalSection",
    "DeleteDC",
    "DeleteObject",
    "DestroyWindow",
    "EnableWindow",
    "EndDialog",
    "EndPaint",
    "EnterCriticalSection",
    "FreeLibrary",
    "GetActiveWindow",
    "GetClassNameW",
    "GetClientRect",
    "GetCurrentProcess",
    "GetCurrentProcessId",
    "GetCurrentThreadId",
    "GetCursorPos",
    "GetDlgItem",
    "GetFocus",
    "GetLastError",
    "GetMenu",
    "GetParent",
    "GetPixel",
    "GetPropW",
    "GetSystemMetrics",
    "GetThreadLocale",
    "GetTickCount64",
    "GetVersion",
    "GetWindow",
    "GetWindowLongPtrW",
    "GetWindowLongW",
    "GetWindowRect",
    "IntersectRect",
    "InvalidateRect",
    "IsChild",
    "IsIconic",
    "IsMenu",
    "IsWindow",
    "IsWindowEnabled",
    "IsWindowVisible",
    "LCMapStringW",
    "LeaveCriticalSection",
    "LocalFree",
    "MapWindowPoints",
    "MonitorFromPoint",
    "MonitorFromRect",
    "MoveWindow",
    "RaiseException",
    "ReleaseDC",
    "ReleaseSRWLockExclusive",
    "RemovePropW",
    "SendMessageW",
    "SetBkColor",
    "SetFocus",
    "SetLastError",
    "SetThreadLocale",
    "SetWindowLongPtrW",
    "SetWindowPos",
    "SetWindowTextW",
    "ShowWindow",
    "StringFromGUID2",
    "SysFreeString",
    "SysStringByteLen",
    "SysStringLen",
    "SystemParametersInfoW",
    "TerminateProcess",
    "VarI4FromStr",
    "VariantInit",
    "WaitForSingleObject",
    // Linked with its counterpart; the module calls only that one.
    "WideCharToMultiByte",
    "WindowFromDC",
    "lstrcmpW",
};

/// What only the compiler's runtime in the module calls, and what stands in for parts of it: at the start, for locks,
/// and to pass an exception on.
const Names of_the_runtime = {
    "CreateEventA",
    "FlsAlloc",
    "FlsFree",
    "FlsGetValue",
    "GetProcessHeap",
    "GetSystemTimeAsFileTime",
    "HeapFree",
    "InitializeCriticalSection",
    "RtlLookupFunctionEntry",
    "RtlUnwindEx",
    "RtlVirtualUnwind",
    "SetEvent",
    "Sleep",
    "SleepConditionVariableSRW",
    "TlsGetValue",
    "VirtualProtect",
    "VirtualQuery",
    "WaitForMultipleObjects",
    "WakeAllConditionVariable",
};

TEST(SystemCalls, OfTheModuleFailInAScenarioOrInTheirRoom) {
  const test_support::ScratchRoot user(HKEY_CURRENT_USER);
  Names visited;
  for (const SystemScenario& scenario : every_system_scenario()) {
    const module_test::Module module;
    FailingSystem system(module.handle());
    scenario.play(module, {[&] { system.arm(0); }, [] {}, [] { return Names(); }});
    visited.insert(system.calls().begin(), system.calls().end());
    test_support::take_reports();
  }
  for (const auto& [function, test] : failed_in_their_rooms) {
    EXPECT_TRUE(visited.insert(function).second) << function << " fails in a scenario too";
  }
  Names forgotten = FailingSystem::functions();
  for (const std::string& function : visited) forgotten.erase(function);
  EXPECT_THAT(forgotten, IsEmpty()) << "no test makes these fail";
}

TEST(SystemCalls, ThatFailNowhereAreKnownToBeHarmless) {
  const module_test::Module module;
  Names others;
  for (const auto& [library, function] : test_support::imports_of(module.handle())) {
    // The C runtime and what it takes from the system's lowest layer.
    if (library == "msvcrt.dll" || library == "ntdll.dll") continue;
    others.insert(function);
  }
  for (const Names& known : {FailingSystem::functions(), FailingMemory::functions(), harmless, of_the_runtime}) {
    for (const std::string& function : known) others.erase(function);
  }
  EXPECT_THAT(others, IsEmpty()) << "nobody has thought of these failing";
}

}  // namespace
}  // namespace faults_test
