#pragma once

#include <windows.h>

#include <string>

namespace snagtrap {

/// The library's key under the current user. Its default value belongs to the clients; the library reads named values:
///   LogDirectory  text   folder of the log; before the program's own wish and before the default folder
///   Interactive   DWORD  1 shows dialogs; 0, the default, only logs
///   TraceEnabled  DWORD  0 leaves traces out of the log; 1 by default
///   MaxLogBytes   DWORD  the size at which the log is put aside; 1 MiB by default, at least 4 KiB
///   KeptLogs      DWORD  how many full logs are kept; 3 by default, at most 99
inline constexpr wchar_t settings_key[] = L"Software\\Orvane\\Snagtrap";

struct Settings {
  std::wstring log_directory;  ///< empty when not set
  bool interactive = false;
  bool trace_enabled = true;
  DWORD max_log_bytes = 1 << 20;
  DWORD kept_logs = 3;
};

/// The settings as they are now. Missing values and values of another type count as not set.
Settings read_settings();

/// The folder that is used when nobody names one: Orvane\Snagtrap\Logs in the user's local application data.
std::wstring default_log_directory();

}  // namespace snagtrap
