#include <objbase.h>
#include <windows.h>
#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>

#include "CrashReport.h"
#include "HeapCheck.h"
#include "Watchdog.h"

namespace {

constexpr DWORD default_limit_s = 180;

/// Seconds, from the environment variable ZD_TEST_WATCHDOG; 0 switches the watchdog off, for a debugger.
DWORD watchdog_limit_ms() {
  const char* text = std::getenv("ZD_TEST_WATCHDOG");
  return 1000 * (text ? static_cast<DWORD>(std::strtoul(text, nullptr, 10)) : default_limit_s);
}

}  // namespace

/// Runs the tests on a thread that is a single-threaded apartment, as a user interface thread of the host is.
int main(int argc, char** argv) {
  test_support::report_crashes();
  testing::InitGoogleMock(&argc, argv);
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
    std::fputs("the test program cannot enter a COM apartment\n", stderr);
    return EXIT_FAILURE;
  }
  auto& listeners = testing::UnitTest::GetInstance()->listeners();
  listeners.Append(new test_support::HeapCheck);
  auto* watchdog = new test_support::Watchdog(watchdog_limit_ms());
  listeners.Append(watchdog);
  const int result = RUN_ALL_TESTS();
  delete listeners.Release(watchdog);
  CoUninitialize();
  return result;
}
