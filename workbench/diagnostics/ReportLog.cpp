#include "ReportLog.h"

#include <shlobj.h>

#include <cstdint>
#include <cstdio>

#include "Hresult.h"

namespace snagtrap {

namespace {

constexpr DWORD max_wait_ms = 1000;
constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Owns the mutex of one log for a scope. Not held when other writers kept it for longer than `max_wait_ms`.
class ScopedMutex {
 public:
  explicit ScopedMutex(const std::wstring& mutex_name) noexcept
      : mutex_(CreateMutexW(nullptr, FALSE, mutex_name.c_str())) {
    if (!mutex_) return;
    const DWORD waited = WaitForSingleObject(mutex_.get(), max_wait_ms);
    held_ = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
  }
  ~ScopedMutex() {
    if (held_) ReleaseMutex(mutex_.get());
  }
  ScopedMutex(const ScopedMutex&) = delete;
  ScopedMutex& operator=(const ScopedMutex&) = delete;

  bool held() const noexcept { return held_; }

 private:
  base::KernelHandle mutex_;
  bool held_ = false;
};

std::wstring full_path(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length == 0 || length >= full.size()) return path;
  full.resize(length);
  while (full.size() > 3 && full.back() == L'\\') full.pop_back();
  return full;
}

/// A mutex name that does not depend on the case of the path's letters. The path itself has backslashes, which a mutex
/// name must not have.
std::wstring mutex_name_for(std::wstring directory) {
  CharUpperBuffW(directory.data(), static_cast<DWORD>(directory.size()));
  std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
  for (const wchar_t unit : directory) hash = (hash ^ unit) * 0x100000001B3;
  wchar_t name[48] = {};
  _snwprintf(name, 48, L"Global\\Orvane.Snagtrap.%016llx", static_cast<unsigned long long>(hash));
  return name;
}

ULONGLONG size_of(HANDLE file) noexcept {
  LARGE_INTEGER size = {};
  return GetFileSizeEx(file, &size) ? static_cast<ULONGLONG>(size.QuadPart) : 0;
}

/// Whether a process ended while it wrote its line. The next line must not be appended to that one.
bool ends_in_the_middle_of_a_line(HANDLE file, ULONGLONG size) noexcept {
  if (size == 0) return false;
  OVERLAPPED at = {};
  at.Offset = static_cast<DWORD>(size - 1);
  at.OffsetHigh = static_cast<DWORD>((size - 1) >> 32);
  char last = '\n';
  DWORD read = 0;
  return ReadFile(file, &last, 1, &read, &at) && read == 1 && last != '\n';
}

}  // namespace

ReportLog::ReportLog(const std::wstring& directory, Bounds bounds)
    : directory_(full_path(directory)), mutex_name_(mutex_name_for(directory_)), bounds_(bounds) {}

HRESULT ReportLog::append(std::string_view line, bool to_disk) const {
  const ScopedMutex lock(mutex_name_);
  base::FileHandle file = open_for_append();
  if (!file) return base::last_failure();
  ULONGLONG size = size_of(file.get());
  if (lock.held() && size != 0 && size + line.size() + 1 > bounds_.max_bytes) {
    file.reset();
    rotate();
    file = open_for_append();
    if (!file) return base::last_failure();
    size = size_of(file.get());
  }
  if (size + line.size() > 2ull * bounds_.max_bytes) return HRESULT_FROM_WIN32(ERROR_FILE_TOO_LARGE);

  std::string bytes = ends_in_the_middle_of_a_line(file.get(), size) ? "\n" : "";
  bytes += line;
  bytes += '\n';
  DWORD written = 0;
  if (!WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
    return base::last_failure();
  if (written != bytes.size()) return HRESULT_FROM_WIN32(ERROR_DISK_FULL);
  if (to_disk && !FlushFileBuffers(file.get())) return base::last_failure();
  return S_OK;
}

HRESULT ReportLog::start_new_file() const {
  const ScopedMutex lock(mutex_name_);
  if (!lock.held()) return HRESULT_FROM_WIN32(ERROR_TIMEOUT);
  return rotate();
}

std::string ReportLog::tail(DWORD max_bytes) const {
  const base::FileHandle file(
      CreateFileW(path().c_str(), GENERIC_READ, share_all, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return {};
  const ULONGLONG size = size_of(file.get());
  const ULONGLONG start = size > max_bytes ? size - max_bytes : 0;
  OVERLAPPED at = {};
  at.Offset = static_cast<DWORD>(start);
  at.OffsetHigh = static_cast<DWORD>(start >> 32);
  std::string text(static_cast<std::size_t>(size - start), '\0');
  DWORD read = 0;
  if (!ReadFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &read, &at)) return {};
  text.resize(read);
  if (start != 0) text.erase(0, text.find('\n') + 1);
  return text;
}

std::wstring ReportLog::file_path(DWORD age) const {
  const std::wstring middle = age != 0 ? L'.' + std::to_wstring(age) : L"";
  return directory_ + L"\\Snagtrap" + middle + L".jsonl";
}

base::FileHandle ReportLog::open_for_append() const {
  const auto open = [this] {
    return base::FileHandle(CreateFileW(path().c_str(), FILE_APPEND_DATA | FILE_READ_DATA, share_all, nullptr,
                                        OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  };
  base::FileHandle file = open();
  if (file || GetLastError() != ERROR_PATH_NOT_FOUND) return file;
  SHCreateDirectoryExW(nullptr, directory_.c_str(), nullptr);
  return open();
}

HRESULT ReportLog::rotate() const {
  if (bounds_.kept == 0) {
    return DeleteFileW(path().c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND ? S_OK : base::last_failure();
  }
  for (DWORD age = bounds_.kept; age > 1; --age) {
    MoveFileExW(file_path(age - 1).c_str(), file_path(age).c_str(), MOVEFILE_REPLACE_EXISTING);
  }
  const bool moved = MoveFileExW(path().c_str(), file_path(1).c_str(), MOVEFILE_REPLACE_EXISTING);
  return moved || GetLastError() == ERROR_FILE_NOT_FOUND ? S_OK : base::last_failure();
}

}  // namespace snagtrap
