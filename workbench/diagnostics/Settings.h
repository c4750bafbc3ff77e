#pragma once

#include <windows.h>

#include <string>

namespace snagtrap {

/// The library's key under the current user. Its default value belongs to the clients; the library reads named values:
///   LogDirectory  text   folder of the log; before the program's proposal and the default folder
///   Interactive   DWORD  1 shows dialogs; 0, the default, only logs
///   TraceEnabled  DWORD  0 leaves traces out of the log; 1 by default
///   MaxLogBytes   DWORD  the size of a log file; 1 MiB by default, at least 4 KiB
///   KeptLogs      DWORD  the number of full files that are kept; 3 by default, at most 99
inline constexpr wchar_t settings_key[] = L"Software\\Orvane\\Snagtrap";

struct Settings {
  std::wstring log_directory;  ///< empty when not set
  bool interactive = false;
  bool trace_enabled = true;
  DWORD max_log_bytes = 1 << 20;
  DWORD kept_logs = 3;
};

/// Reads the settings from the registry. Missing values and values of another type count as not set.
Settings read_settings();

/// The log folder when neither the registry nor the program names one: Orvane\Snagtrap\Logs in the user's local
/// application data.
std::wstring default_log_directory();

}  // namespace snagtrap
