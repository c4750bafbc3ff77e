#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace test_support {

/// The instructions of a process that runs tests for a supervisor. The file of the tests holds their names, one a line.
struct Assignment {
  std::filesystem::path tests;
  std::filesystem::path results;
  bool on_screen;  ///< stays on the desktop that the user sees
};

/// The assignment of this process, or none in a process that a person or CTest started. The processes that this one
/// starts have none.
std::optional<Assignment> take_assignment();

/// Sets the test framework's filter to the tests of the assignment.
void select_assigned_tests(const Assignment& assignment);

/// Runs the selected tests of this program in further processes of it, with the same arguments: those that `on_screen`
/// names (patterns with ; between them) on the screen, the others on a desktop of their own. When a process crashes or
/// hangs, its test has failed and the rest runs in a new process. Writes the failed tests and, as the last line, how
/// many passed and failed. Returns the exit code of the program.
///   ZD_TEST_PART   "screen" or "offscreen" runs only these
///   ZD_TEST_ALONE  if set, each test runs in a process of its own
int supervise(const wchar_t* command_line, const char* on_screen);

}  // namespace test_support
