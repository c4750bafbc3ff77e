#pragma once

#include <string>

namespace snagtrap {

/// What the user chose.
enum class UserAnswer { ignore, always_ignore, debug, abort };

/// What the dialog shows.
struct ReportText {
  std::wstring caption;
  std::wstring headline;   ///< what failed, in a line or two
  std::wstring details;    ///< one line for each field
  bool has_place = false;  ///< whether "always ignore" makes sense
};

/// Whether a window would be seen: a service has no screen, and nobody would answer.
bool can_show_windows() noexcept;

/// Runs the dialog modally over the thread's active window. Esc, closing the window and a dialog that cannot be made
/// mean ignore.
UserAnswer ask_user(const ReportText& text) noexcept;

}  // namespace snagtrap
