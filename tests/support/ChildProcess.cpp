#include "ChildProcess.h"

#include <iostream>
#include <stdexcept>
#include <thread>

namespace test_support {
namespace {

std::wstring quoted(const std::vector<std::wstring>& arguments) {
  std::wstring all;
  for (const std::wstring& argument : arguments) all += L'"' + argument + L"\" ";
  return all;
}

std::string read_all(HANDLE pipe) {
  std::string text;
  char part[4096];
  DWORD size = 0;
  while (ReadFile(pipe, part, sizeof part, &size, nullptr) && size != 0) text.append(part, size);
  return text;
}

/// An empty handle when the process does not start. A null `folder` is this process's.
base::KernelHandle try_start(const std::wstring& command_line, STARTUPINFOW startup, DWORD flags,
                             const wchar_t* folder) {
  PROCESS_INFORMATION started{};
  // CreateProcessW may modify its command line.
  std::wstring line = command_line;
  const BOOL inherits = startup.dwFlags & STARTF_USESTDHANDLES ? TRUE : FALSE;
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, inherits, flags, nullptr, folder, &startup, &started))
    return {};
  CloseHandle(started.hThread);
  return base::KernelHandle(started.hProcess);
}

base::KernelHandle start(const std::wstring& command_line, const STARTUPINFOW& startup, DWORD flags = 0,
                         const wchar_t* folder = nullptr) {
  base::KernelHandle process = try_start(command_line, startup, flags, folder);
  // One start in thousands fails so on the test platform, before anything of the program runs.
  if (!process && GetLastError() == ERROR_INTERNAL_ERROR) {
    std::cout << "a child process did not start and is started again\n";
    process = try_start(command_line, startup, flags, folder);
  }
  if (!process) throw std::runtime_error("a child process does not start, error " + std::to_string(GetLastError()));
  return process;
}

}  // namespace

base::KernelHandle start_process(const std::wstring& command_line, HANDLE output) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = output;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  return start(command_line, startup);
}

base::KernelHandle start_in_console(const std::wstring& command_line, const std::filesystem::path& folder) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  return start(command_line, startup, CREATE_NO_WINDOW, folder.c_str());
}

StartedProgram::StartedProgram(const std::wstring& program, const std::wstring& arguments) {
  base::KernelHandle output_end;
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  if (!CreatePipe(output_.put(), output_end.put(), &inherited, 0))
    throw std::runtime_error("no pipe for a child process");
  SetHandleInformation(output_.get(), HANDLE_FLAG_INHERIT, 0);
  process_ = start_process(L'"' + program + L"\" " + arguments, output_end.get());
}

ChildProcess::ChildProcess(const std::wstring& program, const std::vector<std::wstring>& arguments)
    : started_(program, quoted(arguments)) {}

ChildResult ChildProcess::wait(DWORD limit_ms) {
  ChildResult result{};
  std::thread reader([&] { result.output = read_all(started_.output()); });
  result.timed_out = WaitForSingleObject(started_.process(), limit_ms) != WAIT_OBJECT_0;
  if (result.timed_out) TerminateProcess(started_.process(), 1);
  reader.join();
  WaitForSingleObject(started_.process(), INFINITE);
  GetExitCodeProcess(started_.process(), &result.exit_code);
  return result;
}

ChildResult run_child(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  return ChildProcess(program, arguments).wait();
}

}  // namespace test_support
