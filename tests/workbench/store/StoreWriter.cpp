#include "StoreWriter.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace {

std::filesystem::path program_folder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

/// A new process that writes to `output`; null when it does not start.
HANDLE try_start(std::wstring command, HANDLE output) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started))
    return nullptr;
  CloseHandle(started.hThread);
  return started.hProcess;
}

/// One start in thousands fails on the test platform before anything of the program runs. It is made again, and told.
HANDLE start(const std::wstring& command, HANDLE output) {
  const HANDLE process = try_start(command, output);
  if (process) return process;
  std::cout << "a program did not start, error " << GetLastError() << ", and is started again\n";
  return try_start(command, output);
}

}  // namespace

StoreWriter::StoreWriter(const std::wstring& arguments, const std::wstring& program) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE write_end = nullptr;
  CreatePipe(&output_, &write_end, &inherited, 0);
  SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0);
  process_ = start(L'"' + (program_folder() / program).native() + L"\" " + arguments, write_end);
  const DWORD error = GetLastError();
  CloseHandle(write_end);
  if (!process_) {
    CloseHandle(output_);
    throw std::runtime_error("a program that changes a store does not start, error " + std::to_string(error));
  }
}

StoreWriter::~StoreWriter() {
  kill();
  CloseHandle(output_);
  CloseHandle(process_);
}

std::optional<StoreProgress> StoreWriter::next_progress() {
  StoreProgress said{.acknowledged = true};
  bool any = false;
  char c = 0;
  DWORD count = 0;
  while (ReadFile(output_, &c, 1, &count, nullptr) && count == 1) {
    if (c == '\n') return any ? std::optional(said) : std::nullopt;
    if (c == '?') said.acknowledged = false;
    if (c < '0' || c > '9') continue;
    said.number = said.number * 10 + static_cast<unsigned>(c - '0');
    any = true;
  }
  return std::nullopt;
}

std::optional<unsigned> StoreWriter::next_acknowledged() {
  while (const auto said = next_progress())
    if (said->acknowledged) return said->number;
  return std::nullopt;
}

void StoreWriter::kill() {
  TerminateProcess(process_, killed);
  exit_code();
}

DWORD StoreWriter::exit_code() {
  WaitForSingleObject(process_, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process_, &code);
  return code;
}
