#include <windows.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "OnScreen.h"

const char test_support::tests_on_screen[] = "Misbehaving.DISABLED_OpensADialog;Desktop.OfATestOnTheScreenIsNotItsOwn";

// Each of these must be caught by the supervisor; they only run when the supervisor's own tests ask for them.
namespace {

// Volatile, so that the compiler does not see that the access is wrong.
using Bytes = volatile char* volatile;

TEST(Misbehaving, Passes) {}

TEST(Misbehaving, DISABLED_OpensADialog) { MessageBoxW(nullptr, L"an open question", L"No user answers", MB_OK); }

TEST(Misbehaving, DISABLED_StopsAnswering) {
  CreateWindowW(L"EDIT", L"text", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
  Sleep(INFINITE);
}

TEST(Misbehaving, DISABLED_Crashes) {
  const Bytes nothing = nullptr;
  nothing[0] = 1;
}

TEST(Misbehaving, DISABLED_HangsAtTheEndOfItsProcess) {
  std::atexit([] { Sleep(INFINITE); });
}

TEST(Misbehaving, DISABLED_EndsItsProcess) { TerminateProcess(GetCurrentProcess(), 0); }

// NOLINTBEGIN(cppcoreguidelines-no-malloc): the misbehaviour itself
TEST(Misbehaving, DISABLED_WritesBehindABlock) {
  const Bytes block = static_cast<char*>(std::malloc(24));
  for (int i = 24; i < 32; ++i) block[i] = 1;
}

TEST(Misbehaving, DISABLED_WritesToAFreeBlock) {
  char* volatile block = static_cast<char*>(std::malloc(24));
  std::free(block);
  const Bytes bytes = block;
  bytes[4] = 1;
}
// NOLINTEND(cppcoreguidelines-no-malloc)

TEST(Misbehaving, PassesToo) {}

// The supervisor's own tests read which process runs each of these.
TEST(Process, OfOneTest) { std::printf("process %lu\n", GetCurrentProcessId()); }

TEST(Process, OfAnotherTest) { std::printf("process %lu\n", GetCurrentProcessId()); }

/// Whether the thread's desktop is the one that this process has created for itself.
bool is_on_own_desktop() {
  wchar_t name[100] = L"";
  EXPECT_TRUE(GetUserObjectInformationW(GetThreadDesktop(GetCurrentThreadId()), UOI_NAME, name, sizeof(name), nullptr));
  return name == L"tests-" + std::to_wstring(GetCurrentProcessId());
}

TEST(Desktop, OfATestIsItsOwn) { EXPECT_TRUE(is_on_own_desktop()); }

TEST(Desktop, OfATestOnTheScreenIsNotItsOwn) { EXPECT_FALSE(is_on_own_desktop()); }

}  // namespace
