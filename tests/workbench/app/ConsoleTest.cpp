// A user who presses Ctrl+C at a console, in which the console program shows how far it has come.
#include <windows.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "ChildProcess.h"
#include "ModulePath.h"
#include "Owned.h"
#include "SqliteRuleStore.h"
#include "TemporaryFolder.h"
#include "WithinSeconds.h"

namespace workbench {
namespace {

using test_support::read_bytes;
using test_support::write_bytes;

constexpr int limit_seconds = 120;
constexpr DWORD limit_ms = limit_seconds * 1000;

BOOL WINAPI ignore_event(DWORD) { return TRUE; }

/// The console of another process, which is this process's too as long as this object lives.
class ScopedConsole {
 public:
  explicit ScopedConsole(DWORD process) {
    // A Ctrl+C reaches this process too, perhaps after it left the console: it stays ignored.
    [[maybe_unused]] static const BOOL ignored = SetConsoleCtrlHandler(&ignore_event, TRUE);
    FreeConsole();
    EXPECT_TRUE(test_support::within_seconds(limit_seconds, [&] { return AttachConsole(process) != FALSE; }));
  }
  ~ScopedConsole() {
    FreeConsole();
    AttachConsole(ATTACH_PARENT_PROCESS);
  }
  ScopedConsole(const ScopedConsole&) = delete;
  ScopedConsole& operator=(const ScopedConsole&) = delete;

  /// What a user sees.
  static std::wstring screen() {
    const base::FileHandle output(CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!output || !GetConsoleScreenBufferInfo(output.get(), &info)) return {};
    std::wstring text(static_cast<size_t>(info.dwSize.X) * static_cast<size_t>(info.dwCursorPosition.Y + 1), L' ');
    DWORD read = 0;
    ReadConsoleOutputCharacterW(output.get(), text.data(), static_cast<DWORD>(text.size()), {0, 0}, &read);
    text.resize(read);
    return text;
  }
};

class ConsoleTest : public testing::Test {
 protected:
  ConsoleTest() {
    std::string rules =
        "RuleName,RollOffset,DayType,DayMode,DayOfMonth,DayMonth,WeekOrdinal,Weekday,WeekdayMonth,"
        "MoveToNextTradingDay\r\n";
    constexpr int count = 300'000;
    for (int i = 0; i < count; ++i) rules += "rule " + std::to_string(i) + ",0,0,0,15,1,1,1,1,1\r\n";
    write_bytes(folder_.path() / L"rules.csv", rules);
  }

  /// Starts the program in a console of its own and presses Ctrl+C when it shows how far it has come, by `sign`.
  /// Returns its exit code.
  DWORD cancelled(const std::wstring& arguments, const std::wstring& sign = L" %") {
    const std::wstring program = base::path_beside_program(L"workbench-console.exe");
    const base::KernelHandle process =
        test_support::start_in_console(L'"' + program + L"\" " + arguments, folder_.path());
    const ScopedConsole console(GetProcessId(process.get()));
    const ULONGLONG end = GetTickCount64() + limit_ms;
    std::wstring seen;
    while (seen.find(sign) == std::wstring::npos && GetTickCount64() < end &&
           WaitForSingleObject(process.get(), 50) == WAIT_TIMEOUT)
      seen = ScopedConsole::screen();
    EXPECT_NE(seen.find(sign), std::wstring::npos) << "it shows how far it has come";
    EXPECT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
    EXPECT_EQ(WaitForSingleObject(process.get(), limit_ms), WAIT_OBJECT_0) << "it does not end";
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    if (code == STILL_ACTIVE) TerminateProcess(process.get(), 1);
    return code;
  }

  test_support::TemporaryFolder folder_;
};

constexpr DWORD cancelled_code = 4;

TEST_F(ConsoleTest, CancelledImportLeavesTheStoreAsItWas) {
  const std::filesystem::path store = folder_.path() / L"rules.db";
  open_sqlite_store(store)->add_rule({.name = L"rule 7"});
  const std::string before = read_bytes(store);
  EXPECT_EQ(cancelled(L"--store rules.db --import rules.csv"), cancelled_code);
  EXPECT_EQ(read_bytes(store), before);
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / L"rules.db-journal"));
}

TEST_F(ConsoleTest, CancelledImportCreatesNoStore) {
  EXPECT_EQ(cancelled(L"--store new.db --import rules.csv"), cancelled_code);
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / L"new.db"));
}

/// A file that comes as slowly as from a bad disk, and never ends.
class SlowFile {
 public:
  ~SlowFile() {
    ended_ = true;
    writer_.join();
  }

  const wchar_t* name() const { return L"\\\\.\\pipe\\zd-slow.csv"; }

 private:
  void write() {
    constexpr char part[] = "a rule without numbers\r\n";
    while (!ended_) {
      DWORD written = 0;
      if (!WriteFile(pipe_.get(), part, sizeof(part) - 1, &written, nullptr))
        Sleep(10);  // the program does not read yet
      Sleep(10);
    }
  }

  base::FileHandle pipe_{
      CreateNamedPipeW(name(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE | PIPE_NOWAIT, 1, 65536, 65536, 0, nullptr)};
  std::atomic<bool> ended_ = false;
  std::thread writer_{[this] { write(); }};
};

TEST_F(ConsoleTest, SlowFileIsCancelledWhileItIsRead) {
  const std::filesystem::path store = folder_.path() / L"rules.db";
  open_sqlite_store(store)->add_rule({.name = L"rule 7"});
  const std::string before = read_bytes(store);
  const SlowFile file;
  EXPECT_EQ(cancelled(std::wstring(L"--store rules.db --import ") + file.name()), cancelled_code);
  EXPECT_EQ(read_bytes(store), before);
}

TEST_F(ConsoleTest, ManyMessagesAreCancelled) {
  std::string junk = "# name: a\n# from: 2026-01-01\n# to: 2026-12-31\ndate\n";
  for (int line = 0; line < 400'000; ++line) junk += "no day\n";
  write_bytes(folder_.path() / L"junk.csv", junk);
  open_sqlite_store(folder_.path() / L"rules.db")->add_rule({.name = L"rule 7"});
  EXPECT_EQ(cancelled(L"--store rules.db --import-calendar junk.csv", L"no day"), cancelled_code);
}

TEST_F(ConsoleTest, LongListOfDatesIsCancelled) {
  EXPECT_EQ(cancelled(L"--rules rules.csv --schedule-all --calendar china-futures"), cancelled_code);
}

}  // namespace
}  // namespace workbench
