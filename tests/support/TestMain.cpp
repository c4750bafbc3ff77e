#include <objbase.h>
#include <windows.h>
#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CrashReport.h"
#include "Desktop.h"
#include "HeapCheck.h"
#include "OnScreen.h"
#include "Supervisor.h"
#include "TestResults.h"
#include "Watchdog.h"

namespace {

constexpr DWORD default_limit_s = 180;

/// Seconds, from the environment variable ZD_TEST_WATCHDOG, else from ZD_TEST_LIMIT, which CTest sets for each program;
/// 0 switches the watchdog off, for a debugger.
DWORD watchdog_limit_ms() {
  const char* text = std::getenv("ZD_TEST_WATCHDOG");
  if (!text) text = std::getenv("ZD_TEST_LIMIT");
  return 1000 * (text ? static_cast<DWORD>(std::strtoul(text, nullptr, 10)) : default_limit_s);
}

/// Runs the tests on a thread that is a single-threaded apartment, as a user interface thread of the host is.
int run_tests(test_support::ResultWriter* results) {
  test_support::report_crashes();
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
    std::fputs("the test program cannot enter a COM apartment\n", stderr);
    return EXIT_FAILURE;
  }
  auto& listeners = testing::UnitTest::GetInstance()->listeners();
  // The first listener is called last at the end of a test, after the others.
  if (results) listeners.Append(results);
  listeners.Append(new test_support::HeapCheck);
  auto* watchdog = new test_support::Watchdog(watchdog_limit_ms());
  listeners.Append(watchdog);
  if (GTEST_FLAG_GET(shuffle)) {
    // The order of a run that fails can be repeated.
    if (GTEST_FLAG_GET(random_seed) == 0) GTEST_FLAG_SET(random_seed, static_cast<int>(GetTickCount() % 99999 + 1));
    std::printf("GTEST_SHUFFLE=1 GTEST_RANDOM_SEED=%d\n", static_cast<int>(GTEST_FLAG_GET(random_seed)));
  }
  const int result = RUN_ALL_TESTS();
  // It stays until the process has ended, because what comes after the last test may hang too.
  listeners.Release(watchdog);
  CoUninitialize();
  return result;
}

}  // namespace

/// Runs the tests in a process that this one supervises; with the argument --here, for a debugger, in this process and
/// on the screen.
// NOLINTNEXTLINE(bugprone-exception-escape): an exception ends a test program as it should, with a failure
int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (const auto assignment = test_support::take_assignment()) {
    if (!assignment->on_screen && !test_support::move_to_own_desktop()) {
      std::fprintf(stderr, "the test program gets no desktop of its own, error %lu\n", GetLastError());
      return EXIT_FAILURE;
    }
    test_support::select_assigned_tests(*assignment);
    return run_tests(new test_support::ResultWriter(assignment->results));
  }
  const bool here = argc > 1 && std::strcmp(argv[1], "--here") == 0;
  if (here || GTEST_FLAG_GET(list_tests)) return run_tests(nullptr);
  return test_support::supervise(GetCommandLineW(), test_support::tests_on_screen);
}
