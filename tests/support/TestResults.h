#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace test_support {

/// Tests by their full names, Suite.Test, in the order in which they run.
using TestNames = std::vector<std::string>;

/// The full name of a test.
std::string full_name(const testing::TestInfo& test);

/// How far a process came with its tests.
struct TestResults {
  TestNames passed;
  TestNames skipped;
  TestNames failed;
  std::string unfinished;  ///< the test that started and did not end; empty if there is none

  /// The tests that the process started.
  std::size_t started() const;
};

/// Writes the start and the end of each test to a file as they happen, so that another process knows which test this
/// one was in when it ended.
class ResultWriter : public testing::EmptyTestEventListener {
 public:
  explicit ResultWriter(const std::filesystem::path& file);

  void OnTestStart(const testing::TestInfo& test) override;
  void OnTestEnd(const testing::TestInfo& test) override;

 private:
  std::ofstream file_;
};

/// What a process wrote to its file.
TestResults read_results(const std::filesystem::path& file);

}  // namespace test_support
