#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "Progress.h"

namespace workbench {

/// Writes text to the standard output, or to the standard error output, of a program that has a window of its own: to
/// the console it was started from, or as UTF-8 to a file or pipe. Returns whether the text could be written.
bool write_output(std::wstring_view text, const schedule::Progress& progress = {});
bool write_error(std::wstring_view text);

/// The same with text that is UTF-8 already, which may be long. Returns false as well when not all of it could be
/// written.
bool write_output_utf8(std::string_view text, const schedule::Progress& progress);

/// Whether a person sees the standard output, or the standard error output, in a console.
bool is_output_on_console();
bool is_error_on_console();

/// Whether `read_secret` can ask the user. A program with a window cannot, even where it writes to a console: the shell
/// that started it does not wait for it and would take what is typed.
bool can_read_secret();

/// Shows this text in the console, whatever the standard handles are, and reads a line that is not shown. Returns
/// nothing when the user presses Ctrl+C.
std::optional<std::wstring> read_secret(const std::wstring& prompt);

/// Shows the progress of what takes longer than a second, once a second, to a person who looks at a console, and lets
/// Ctrl+C cancel it. There is one.
class ConsoleProgress {
 public:
  ConsoleProgress();
  ConsoleProgress(const ConsoleProgress&) = delete;
  ConsoleProgress& operator=(const ConsoleProgress&) = delete;
  ~ConsoleProgress();

  /// A part of the command from `first` to `last` hundredths.
  schedule::Progress part(std::size_t first, std::size_t last);

  /// The same for output, which on a console is its own progress.
  schedule::Progress output_part(std::size_t first, std::size_t last);

  /// For work of which it is not known how much it is: what was shown last is shown again.
  schedule::Progress same();

  static bool is_cancelled() noexcept;

 private:
  bool show(double share);

  bool is_visible_ = is_error_on_console();
  std::chrono::steady_clock::time_point shown_ = std::chrono::steady_clock::now();
  double share_ = 0;
};

}  // namespace workbench
