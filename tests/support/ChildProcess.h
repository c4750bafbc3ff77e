#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Owned.h"

namespace test_support {

/// How a child process ended.
struct ChildResult {
  DWORD exit_code;
  std::string output;  ///< what it wrote to its standard output
  /// Whether it had to be ended because it took too long, which usually means a window that waits for a user.
  bool timed_out;
};

/// Starts a program by its command line, with this standard output; its standard input and error are this process's.
/// Throws `std::runtime_error` when it cannot be started.
base::KernelHandle start_process(const std::wstring& command_line, HANDLE output);

/// Starts a program by its command line in a folder, with a console of its own that has no window. Throws
/// `std::runtime_error` when it cannot be started.
base::KernelHandle start_in_console(const std::wstring& command_line, const std::filesystem::path& folder);

/// A program that was started, with a pipe for its standard output. It runs on when this object is destroyed.
class StartedProgram {
 public:
  /// Starts a program with what follows its name on the command line. Its standard input and error are this process's.
  /// Throws `std::runtime_error` when it cannot be started.
  StartedProgram(const std::wstring& program, const std::wstring& arguments);

  HANDLE process() const { return process_.get(); }
  HANDLE output() const { return output_.get(); }
  DWORD id() const { return GetProcessId(process_.get()); }

 private:
  base::KernelHandle process_;
  base::KernelHandle output_;
};

/// A running child process.
class ChildProcess {
 public:
  /// Starts a program with arguments, none of which may hold a double quote. Its standard error is this process's.
  /// Throws `std::runtime_error` when it cannot be started.
  ChildProcess(const std::wstring& program, const std::vector<std::wstring>& arguments);

  DWORD id() const { return started_.id(); }

  /// Waits until the process ends, at most `limit_ms`, then ends it. Called once.
  ChildResult wait(DWORD limit_ms = 60'000);

 private:
  StartedProgram started_;
};

/// Starts a program and waits for it.
ChildResult run_child(const std::wstring& program, const std::vector<std::wstring>& arguments);

}  // namespace test_support
