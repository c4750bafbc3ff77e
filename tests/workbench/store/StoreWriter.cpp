#include "StoreWriter.h"

#include <filesystem>
#include <stdexcept>

namespace {

std::filesystem::path program_folder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

}  // namespace

StoreWriter::StoreWriter(const std::wstring& arguments) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE write_end = nullptr;
  CreatePipe(&output_, &write_end, &inherited, 0);
  SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0);

  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = write_end;
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  std::wstring command = L'"' + (program_folder() / L"store_writer.exe").native() + L"\" " + arguments;
  PROCESS_INFORMATION started{};
  const BOOL ok =
      CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &started);
  CloseHandle(write_end);
  if (!ok) throw std::runtime_error("store_writer does not start");
  CloseHandle(started.hThread);
  process_ = started.hProcess;
}

StoreWriter::~StoreWriter() {
  kill();
  CloseHandle(output_);
  CloseHandle(process_);
}

std::optional<unsigned> StoreWriter::next_acknowledged() {
  unsigned number = 0;
  bool any = false;
  char c = 0;
  DWORD count = 0;
  while (ReadFile(output_, &c, 1, &count, nullptr) && count == 1) {
    if (c == '\n') return any ? std::optional(number) : std::nullopt;
    if (c < '0' || c > '9') continue;
    number = number * 10 + static_cast<unsigned>(c - '0');
    any = true;
  }
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
