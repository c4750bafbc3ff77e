#include "Supervisor.h"

#include <windows.h>
#include <gtest/gtest.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>

#include "ChildProcess.h"
#include "CrashReport.h"
#include "TemporaryFolder.h"
#include "TestResults.h"
#include "Watchdog.h"

namespace test_support {
namespace {

constexpr char assignment_variable[] = "ZD_TEST_ASSIGNMENT";

std::string variable(const char* name) {
  char value[MAX_PATH + 1] = "";
  return GetEnvironmentVariableA(name, value, sizeof value) < sizeof value ? value : "";
}

bool matches(const std::string& name, std::string patterns) {
  std::replace(patterns.begin(), patterns.end(), ':', ';');
  return !patterns.empty() && PathMatchSpecA(name.c_str(), patterns.c_str());
}

/// As the test framework understands its filter: patterns, and after a - those that are left out.
bool passes_filter(const std::string& name) {
  const std::string filter = GTEST_FLAG_GET(filter);
  const std::size_t minus = filter.find('-');
  const std::string wanted = filter.substr(0, minus);
  if (!wanted.empty() && !matches(name, wanted)) return false;
  return minus == std::string::npos || !matches(name, filter.substr(minus + 1));
}

bool is_disabled(const std::string& name) {
  return !GTEST_FLAG_GET(also_run_disabled_tests) &&
         (name.starts_with("DISABLED_") || name.find(".DISABLED_") != std::string::npos ||
          name.find("/DISABLED_") != std::string::npos);
}

TestNames selected_tests() {
  TestNames names;
  const auto& program = *testing::UnitTest::GetInstance();
  for (int i = 0; i < program.total_test_suite_count(); ++i) {
    const auto& suite = *program.GetTestSuite(i);
    for (int j = 0; j < suite.total_test_count(); ++j) {
      const std::string name = full_name(*suite.GetTestInfo(j));
      if (passes_filter(name) && !is_disabled(name)) names.push_back(name);
    }
  }
  return names;
}

/// Keeps every n-th test, from the k-th on, for a shard "k/n".
void keep_shard(TestNames& tests, const std::string& shard) {
  unsigned number = 0;
  unsigned count = 0;
  if (std::sscanf(shard.c_str(), "%u/%u", &number, &count) != 2 || number == 0 || number > count) return;
  unsigned position = 0;
  std::erase_if(tests, [&](const std::string&) { return position++ % count != number - 1; });
}

void write_lines(const std::filesystem::path& file, const TestNames& lines) {
  std::ofstream out(file, std::ios::binary);
  for (const std::string& line : lines) out << line << '\n';
}

/// Starts this program again. Returns its exit code.
DWORD run_process(const wchar_t* command_line) {
  DWORD code = EXIT_FAILURE;
  try {
    const base::KernelHandle process = start_process(command_line, GetStdHandle(STD_OUTPUT_HANDLE));
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &code);
  } catch (const std::runtime_error& error) {
    std::printf("%s\n", error.what());
  }
  return code;
}

std::string ending(DWORD code) {
  switch (code) {
    case watchdog_exit_code:
      return "hung";
    case crash_exit_code:
      return "crashed";
    default:
      return "ended its process with code " + std::to_string(code);
  }
}

class Supervisor {
 public:
  explicit Supervisor(const wchar_t* command_line) : command_line_(command_line) {}

  void run(TestNames tests, bool on_screen) {
    const bool alone = !variable("ZD_TEST_ALONE").empty();
    while (!tests.empty()) {
      const TestResults results = run_some(alone ? TestNames{tests.front()} : tests, on_screen);
      // A process that started no test would start none the next time.
      if (results.started() == 0) return;
      std::set<std::string> done(results.passed.begin(), results.passed.end());
      done.insert(results.skipped.begin(), results.skipped.end());
      done.insert(results.failed.begin(), results.failed.end());
      done.insert(results.unfinished);
      std::erase_if(tests, [&](const std::string& test) { return done.contains(test); });
    }
  }

  int finish() const {
    for (const std::string& failure : failures_) std::printf("FAILED: %s\n", failure.c_str());
    if (skipped_) std::printf("%zu skipped\n", skipped_);
    std::printf("%zu passed, %zu failed\n", passed_, failures_.size());
    // When several programs get one filter, some have no test for it.
    const bool may_be_empty = !variable("ZD_TEST_MAY_BE_EMPTY").empty();
    return failures_.empty() && (passed_ + skipped_ || may_be_empty) ? EXIT_SUCCESS : EXIT_FAILURE;
  }

 private:
  TestResults run_some(const TestNames& tests, bool on_screen) {
    const auto list = folder_.path() / "tests";
    const auto written = folder_.path() / "results";
    write_lines(list, tests);
    std::filesystem::remove(written);
    SetEnvironmentVariableA(assignment_variable, ((on_screen ? "+" : "-") + folder_.path().string()).c_str());
    std::fflush(stdout);
    const DWORD code = run_process(command_line_);
    TestResults results = read_results(written);
    passed_ += results.passed.size();
    skipped_ += results.skipped.size();
    failures_.insert(failures_.end(), results.failed.begin(), results.failed.end());
    if (!results.unfinished.empty()) {
      failures_.push_back(results.unfinished + " " + ending(code));
    } else if (code != (results.failed.empty() ? EXIT_SUCCESS : EXIT_FAILURE) || results.started() == 0) {
      failures_.push_back("outside its tests the program " + ending(code));
    }
    return results;
  }

  const wchar_t* command_line_;
  TemporaryFolder folder_;
  std::size_t passed_ = 0;
  std::size_t skipped_ = 0;
  TestNames failures_;
};

}  // namespace

std::optional<Assignment> take_assignment() {
  const std::string value = variable(assignment_variable);
  if (value.empty()) return std::nullopt;
  SetEnvironmentVariableA(assignment_variable, nullptr);
  const std::filesystem::path folder = value.substr(1);
  return Assignment{folder / "tests", folder / "results", value.front() == '+'};
}

void select_assigned_tests(const Assignment& assignment) {
  std::string filter;
  std::ifstream lines(assignment.tests, std::ios::binary);
  for (std::string line; std::getline(lines, line);) filter += line + ':';
  GTEST_FLAG_SET(filter, filter);
}

int supervise(const wchar_t* command_line, const char* on_screen) {
  TestNames offscreen = selected_tests();
  const auto first = std::stable_partition(offscreen.begin(), offscreen.end(),
                                           [&](const std::string& name) { return !matches(name, on_screen); });
  const TestNames shown(first, offscreen.end());
  offscreen.erase(first, offscreen.end());
  const std::string part = variable("ZD_TEST_PART");
  keep_shard(offscreen, variable("ZD_TEST_SHARD"));
  Supervisor supervisor(command_line);
  if (part != "screen") supervisor.run(offscreen, false);
  if (part != "offscreen") supervisor.run(shown, true);
  return supervisor.finish();
}

}  // namespace test_support
