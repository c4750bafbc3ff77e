#pragma once

#include <string>

namespace snagtrap {

/// What the user chose in the dialog.
enum class UserAnswer { ignore, always_ignore, debug, abort };

/// The texts that the dialog shows.
struct ReportText {
  std::wstring caption;
  std::wstring headline;      ///< what failed, in a line or two
  std::wstring details;       ///< one line for each field
  bool has_location = false;  ///< whether the user can choose to ignore its location
};

/// Whether the process's windows are visible. Those of a service are not, and its dialogs would wait for ever.
bool can_show_windows() noexcept;

/// Runs the dialog modally over the thread's active window. Returns `ignore` also for Esc, for a closed window and when
/// the dialog cannot be created.
UserAnswer ask_user(const ReportText& text) noexcept;

}  // namespace snagtrap
