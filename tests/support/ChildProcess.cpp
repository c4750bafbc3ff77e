#include "ChildProcess.h"

#include <filesystem>
#include <stdexcept>
#include <thread>

namespace test_support {
namespace {

std::wstring command_line(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  std::wstring line = L'"' + program + L'"';
  for (const std::wstring& argument : arguments) line += L" \"" + argument + L'"';
  return line;
}

std::string read_all(HANDLE pipe) {
  std::string text;
  char part[4096];
  DWORD size = 0;
  while (ReadFile(pipe, part, sizeof part, &size, nullptr) && size != 0) text.append(part, size);
  return text;
}

}  // namespace

ChildProcess::ChildProcess(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  HANDLE output_end = nullptr;
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  if (!CreatePipe(&output_, &output_end, &inherited, 0)) throw std::runtime_error("no pipe for a child process");
  SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0);

  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = output_end;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION started{};
  std::wstring line = command_line(program, arguments);
  const BOOL created =
      CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started);
  CloseHandle(output_end);
  if (!created) {
    CloseHandle(output_);
    throw std::runtime_error("a child process does not start");
  }
  CloseHandle(started.hThread);
  process_ = started.hProcess;
  id_ = started.dwProcessId;
}

ChildProcess::~ChildProcess() {
  CloseHandle(output_);
  CloseHandle(process_);
}

ChildResult ChildProcess::wait(DWORD limit_ms) {
  ChildResult result{};
  std::thread reader([&] { result.output = read_all(output_); });
  result.timed_out = WaitForSingleObject(process_, limit_ms) != WAIT_OBJECT_0;
  if (result.timed_out) TerminateProcess(process_, 1);
  reader.join();
  WaitForSingleObject(process_, INFINITE);
  GetExitCodeProcess(process_, &result.exit_code);
  return result;
}

ChildResult run_child(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  return ChildProcess(program, arguments).wait();
}

std::wstring program_folder() {
  wchar_t program[32768] = {};
  GetModuleFileNameW(nullptr, program, ARRAYSIZE(program));
  return std::filesystem::path(program).parent_path();
}

}  // namespace test_support
