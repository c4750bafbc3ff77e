#pragma once

#include <string>

namespace snagtrap {

/// Shows the newest lines of the log, with buttons that open the log's folder and take back every "always ignore".
/// Runs modally over the thread's active window.
void show_recent_reports(const std::wstring& log_path, const std::wstring& recent_lines) noexcept;

}  // namespace snagtrap
