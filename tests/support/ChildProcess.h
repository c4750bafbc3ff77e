#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace test_support {

/// What became of a child process.
struct ChildResult {
  DWORD exit_code;
  std::string output;  ///< what it wrote to its standard output
  /// Whether it had to be ended because it took too long, which usually means a window that nobody answers.
  bool timed_out;
};

/// A running child process.
class ChildProcess {
 public:
  /// Starts a program with arguments, none of which may hold a double quote. Its standard error is this process's.
  /// Throws `std::runtime_error` when it cannot be started.
  ChildProcess(const std::wstring& program, const std::vector<std::wstring>& arguments);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  DWORD id() const { return id_; }

  /// Waits until the process ends, at most `limit_ms`, then ends it. Called once.
  ChildResult wait(DWORD limit_ms = 60'000);

 private:
  HANDLE process_ = nullptr;
  HANDLE output_ = nullptr;
  DWORD id_ = 0;
};

/// Starts a program and waits for it.
ChildResult run_child(const std::wstring& program, const std::vector<std::wstring>& arguments);

/// The folder of the running program, without a backslash at its end.
std::wstring program_folder();

}  // namespace test_support
