#include "CrashReport.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace test_support {
namespace {

const char* running_test() {
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  return test ? test->name() : "no test";
}

LONG WINAPI report_and_end(EXCEPTION_POINTERS* crash) {
  const auto& record = *crash->ExceptionRecord;
  HMODULE module = nullptr;
  char path[MAX_PATH] = "?";
  if (GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         static_cast<const char*>(record.ExceptionAddress), &module)) {
    GetModuleFileNameA(module, path, ARRAYSIZE(path));
  }
  const auto offset = reinterpret_cast<ULONG_PTR>(record.ExceptionAddress) - reinterpret_cast<ULONG_PTR>(module);
  std::fprintf(stderr, "crash: exception %08lx in %s at %s+0x%llx\n", record.ExceptionCode, running_test(), path,
               offset);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), crash_exit_code);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

void report_crashes() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(report_and_end);
}

}  // namespace test_support
