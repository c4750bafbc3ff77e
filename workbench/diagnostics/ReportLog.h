#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "Owned.h"

namespace snagtrap {

/// A log of lines in one folder: Snagtrap.jsonl grows to its bound, then it is put aside as Snagtrap.1.jsonl, the one
/// before becomes Snagtrap.2.jsonl, and so on. All processes that name the folder share it: a line is whole or absent,
/// and lines of one process keep their order. Nothing here throws but for want of memory.
class ReportLog {
 public:
  struct Bounds {
    DWORD max_bytes;  ///< of one file
    DWORD kept;       ///< files put aside, beside the growing one
  };

  /// `directory` is made when it is missing; a relative one starts at the current folder.
  ReportLog(const std::wstring& directory, Bounds bounds);

  /// Appends a line (without its end), at most `max_bytes - 1` long. `to_disk` waits until it is on the disk, so that
  /// it outlives even the system. When another process holds the log for longer than a second, the line is appended
  /// all the same, to a file that may then grow to twice its bound. Answers an HRESULT of the system's.
  HRESULT append(std::string_view line, bool to_disk) const;

  /// Puts the growing file aside, if there is one.
  HRESULT put_aside() const;

  /// The last bytes of the growing file, from the start of a line.
  std::string tail(DWORD max_bytes) const;

  const std::wstring& directory() const noexcept { return directory_; }
  std::wstring path() const { return file_path(0); }
  /// The mutex that gives writers their turn. Whoever holds it may rearrange the files.
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
