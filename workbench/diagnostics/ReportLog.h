#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "Owned.h"

namespace snagtrap {

/// A rotated log in one folder: Snagtrap.jsonl grows to its bound and is then renamed to Snagtrap.1.jsonl, the former
/// Snagtrap.1.jsonl to Snagtrap.2.jsonl, and so on. All processes that name the folder share the log: a line is whole
/// or absent, and lines of one process keep their order. Methods throw only `std::bad_alloc`.
class ReportLog {
 public:
  struct Bounds {
    DWORD max_bytes;  ///< size of one file
    DWORD kept;       ///< number of rotated files, beside the growing one
  };

  /// Creates `directory` with the first line when it is missing; a relative path starts at the current folder.
  ReportLog(const std::wstring& directory, Bounds bounds);

  /// Appends a line (without its end), at most `max_bytes - 1` long. `to_disk` waits until it is on the disk, so that
  /// it survives even a crash of the system. When another process holds the log for longer than a second, the line is
  /// appended without rotating, to a file that may then grow to twice its bound. Returns an HRESULT.
  HRESULT append(std::string_view line, bool to_disk) const;

  /// Renames the growing file as if it were full. Succeeds when there is none. Returns an HRESULT.
  HRESULT start_new_file() const;

  /// The whole lines among the last `max_bytes` of the growing file; empty when it cannot be read.
  std::string tail(DWORD max_bytes) const;

  const std::wstring& directory() const noexcept { return directory_; }
  std::wstring path() const { return file_path(0); }
  /// The name of the mutex that serialises the writers of all processes. Only its owner renames files.
  const std::wstring& mutex_name() const noexcept { return mutex_name_; }

 private:
  std::wstring file_path(DWORD age) const;
  base::FileHandle open_for_append() const;
  HRESULT rotate() const;

  std::wstring directory_;
  std::wstring mutex_name_;
  Bounds bounds_;
};

}  // namespace snagtrap
