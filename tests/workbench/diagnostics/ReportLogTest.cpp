#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <thread>

#include "ChildProcess.h"
#include "LogFolder.h"
#include "ModulePath.h"
#include "Owned.h"
#include "ReportLog.h"
#include "WithinSeconds.h"

namespace snagtrap_test {
namespace {

using snagtrap::ReportLog;

constexpr ReportLog::Bounds roomy{1 << 20, 3};

class Log : public testing::Test {
 protected:
  ReportLog log(ReportLog::Bounds bounds = roomy) const { return {folder.path(), bounds}; }

  LogFolder folder;
};

TEST_F(Log, AppendsLineAfterLine) {
  EXPECT_EQ(log().append("first", true), S_OK);
  EXPECT_EQ(log().append("second", false), S_OK);
  EXPECT_EQ(folder.content(), "first\nsecond\n");
}

TEST_F(Log, CreatesItsFolder) {
  const ReportLog deep(folder.path() / L"a" / L"b", roomy);
  EXPECT_EQ(deep.append("x", false), S_OK);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / L"a" / L"b" / L"Snagtrap.jsonl"));
}

TEST_F(Log, FolderThatIsAFileIsAFailure) {
  test_support::write_bytes(folder.path() / L"file", "x");
  const ReportLog impossible(folder.path() / L"file", roomy);
  EXPECT_TRUE(FAILED(impossible.append("x", false)));
}

TEST_F(Log, OneFolderIsOneLogInEverySpelling) {
  std::wstring upper = folder.path();
  CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
  const ReportLog other(upper + L"\\.\\", roomy);
  EXPECT_EQ(other.append("x", false), S_OK);
  EXPECT_EQ(folder.content(), "x\n");
}

TEST_F(Log, NeverGrowsBeyondItsBound) {
  constexpr ReportLog::Bounds bounds{100, 2};
  for (int i = 0; i < 50; ++i) {
    ASSERT_EQ(log(bounds).append("line " + std::to_string(i), false), S_OK);
    ASSERT_LE(std::filesystem::file_size(folder.file()), bounds.max_bytes);
  }
  EXPECT_EQ(folder.file_count(), 3u);
}

TEST_F(Log, LineThatFillsTheFileExactlyStays) {
  constexpr ReportLog::Bounds bounds{10, 2};
  log(bounds).append("1234", false);
  log(bounds).append("5678", false);
  EXPECT_EQ(folder.content(), "1234\n5678\n");
  log(bounds).append("9", false);
  EXPECT_EQ(folder.content(), "9\n");
  EXPECT_EQ(folder.content(1), "1234\n5678\n");
}

TEST_F(Log, RotatesFullFilesInOrderAndDropsTheOldest) {
  constexpr ReportLog::Bounds bounds{4, 2};
  for (const char* line : {"a", "b", "c", "d", "e", "f", "g"}) log(bounds).append(line, false);
  EXPECT_EQ(folder.content(), "g\n");
  EXPECT_EQ(folder.content(1), "e\nf\n");
  EXPECT_EQ(folder.content(2), "c\nd\n");
  EXPECT_EQ(folder.file_count(), 3u);
}

TEST_F(Log, KeepsNoFullFilesWhenNoneAreWanted) {
  constexpr ReportLog::Bounds bounds{4, 0};
  for (const char* line : {"a", "b", "c"}) log(bounds).append(line, false);
  EXPECT_EQ(folder.content(), "c\n");
  EXPECT_EQ(folder.file_count(), 1u);
}

TEST_F(Log, LineAfterAnIncompleteOneIsComplete) {
  test_support::write_bytes(folder.file(), "whole\ntorn");
  log().append("next", false);
  EXPECT_EQ(folder.content(), "whole\ntorn\nnext\n");
}

TEST_F(Log, ReaderDoesNotBlockTheWriter) {
  log().append("first", false);
  const base::FileHandle reader(CreateFileW(folder.file().c_str(), GENERIC_READ,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(reader);
  constexpr ReportLog::Bounds bounds{8, 1};
  EXPECT_EQ(log(bounds).append("second", false), S_OK);
  EXPECT_EQ(folder.content(1), "first\n");
  EXPECT_EQ(folder.content(), "second\n");
}

TEST_F(Log, FileThatCannotBeRenamedGrowsToTwiceItsBoundAndNoFurther) {
  constexpr ReportLog::Bounds bounds{20, 1};
  log(bounds).append("first", false);
  const base::FileHandle holder(CreateFileW(folder.file().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(holder);
  HRESULT last = S_OK;
  for (int i = 0; i < 20; ++i) last = log(bounds).append("more", false);
  EXPECT_EQ(last, HRESULT_FROM_WIN32(ERROR_FILE_TOO_LARGE));
  EXPECT_LE(std::filesystem::file_size(folder.file()), 2u * bounds.max_bytes + 1);
  EXPECT_EQ(folder.content().substr(0, 11), "first\nmore\n");
}

TEST_F(Log, StartNewFileRenamesTheOldOne) {
  log().append("old", false);
  EXPECT_EQ(log().start_new_file(), S_OK);
  EXPECT_FALSE(std::filesystem::exists(folder.file()));
  EXPECT_EQ(folder.content(1), "old\n");
}

TEST_F(Log, StartNewFileWithoutAFileSucceeds) { EXPECT_EQ(log().start_new_file(), S_OK); }

TEST_F(Log, TailStartsAtALine) {
  log().append("first", false);
  log().append("second", false);
  log().append("third", false);
  EXPECT_EQ(log().tail(15), "second\nthird\n");
  EXPECT_EQ(log().tail(1000), "first\nsecond\nthird\n");
}

TEST_F(Log, TailWithoutAFileIsEmpty) { EXPECT_EQ(log().tail(100), ""); }

TEST_F(Log, WaitsNoLongerThanASecondForAnotherProcess) {
  test_support::ChildProcess holder(base::path_beside_program(L"snagtrap_child.exe"), {L"hold the log", folder.path()});
  ASSERT_TRUE(test_support::within_seconds(60, [&] { return std::filesystem::exists(folder.path() / L"held"); }));
  EXPECT_EQ(log().append("late, but not lost", false), S_OK);
  EXPECT_EQ(folder.content(), "late, but not lost\n");
  EXPECT_EQ(log().start_new_file(), HRESULT_FROM_WIN32(ERROR_TIMEOUT));
  test_support::write_bytes(folder.path() / L"release", "x");
  EXPECT_EQ(holder.wait().exit_code, 0u);
}

/// Lines "writer number" of several writers; each writer's numbers rise.
class SharedLog : public Log {
 protected:
  static constexpr int writers = 3;
  static constexpr int lines_each = 150;

  void expect_everything(const std::string& all) const {
    std::map<std::string, int> next;
    std::istringstream stream(all);
    for (std::string line; std::getline(stream, line);) {
      const std::size_t space = line.find(' ');
      ASSERT_NE(space, std::string::npos) << line;
      const std::string writer = line.substr(0, space);
      ASSERT_EQ(line.substr(space + 1), std::to_string(next[writer])) << "of writer " << writer;
      ++next[writer];
    }
    ASSERT_EQ(next.size(), static_cast<std::size_t>(writers));
    for (const auto& [writer, count] : next) EXPECT_EQ(count, lines_each) << "of writer " << writer;
  }

  std::string all_files() const {
    std::string all;
    for (int age = 99; age >= 0; --age) all += folder.content(age);
    return all;
  }
};

TEST_F(SharedLog, ProcessesLoseAndMixNoLines) {
  // The bound is so small that the file is rotated several times while all of them write.
  std::vector<std::unique_ptr<test_support::ChildProcess>> children;
  for (int writer = 0; writer < writers; ++writer) {
    children.push_back(std::make_unique<test_support::ChildProcess>(
        base::path_beside_program(L"snagtrap_child.exe"),
        std::vector<std::wstring>{L"write lines", folder.path(), L"writer" + std::to_wstring(writer),
                                  std::to_wstring(lines_each), L"1000"}));
  }
  for (const auto& child : children) EXPECT_EQ(child->wait().exit_code, 0u);
  EXPECT_GT(folder.file_count(), 2u);
  expect_everything(all_files());
}

TEST_F(SharedLog, ThreadsLoseAndMixNoLines) {
  std::vector<std::thread> threads;
  for (int writer = 0; writer < writers; ++writer) {
    threads.emplace_back([this, writer] {
      for (int i = 0; i < lines_each; ++i) {
        log({1000, 99}).append("writer" + std::to_string(writer) + ' ' + std::to_string(i), false);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  expect_everything(all_files());
}

}  // namespace
}  // namespace snagtrap_test
