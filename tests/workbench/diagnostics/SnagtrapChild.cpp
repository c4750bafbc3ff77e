// The second process of the log tests: writes to the log that its parent and its siblings write to.
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "ReportLog.h"
#include "TextEncoding.h"

namespace {

constexpr int failed = 1;

std::wstring argument(int index) { return index < __argc ? __wargv[index] : L""; }

/// FOLDER NAME COUNT BOUND: writes COUNT lines "NAME number" to the log in FOLDER.
int write_lines() {
  const int count = std::stoi(argument(4));
  const auto bound = static_cast<DWORD>(std::stoul(argument(5)));
  for (int i = 0; i < count; ++i) {
    const snagtrap::ReportLog log(argument(2), {bound, 99});
    if (FAILED(log.append(base::to_utf8(argument(3)) + ' ' + std::to_string(i), false))) return failed;
  }
  return 0;
}

/// FOLDER: owns the mutex of the log in FOLDER, creates the file "held" there and waits for the file "release".
int hold_the_log() {
  const std::filesystem::path folder = argument(2);
  const base::KernelHandle mutex(
      CreateMutexW(nullptr, TRUE, snagtrap::ReportLog(folder, {1 << 20, 3}).mutex_name().c_str()));
  if (!mutex) return failed;
  std::ofstream(folder / L"held") << "x";
  while (!std::filesystem::exists(folder / L"release")) Sleep(10);
  ReleaseMutex(mutex.get());
  return 0;
}

}  // namespace

int wmain() {
  if (argument(1) == L"write lines") return write_lines();
  if (argument(1) == L"hold the log") return hold_the_log();
  return failed;
}
