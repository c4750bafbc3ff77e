#pragma once

#include <string_view>

#include "Progress.h"

namespace workbench {

/// Writes text to the standard output, or to the standard error output, of a program that has a window of its own: to
/// the console it was started from, or as UTF-8 to a file or pipe. Returns whether the text could be written.
bool write_output(std::wstring_view text);
bool write_error(std::wstring_view text);

/// The same with text that is UTF-8 already, which may be long. Returns false as well when not all of it could be
/// written.
bool write_output_utf8(std::string_view text, const schedule::Progress& progress);

/// Whether a person sees the standard output, or the standard error output, in a console.
bool is_output_on_console();
bool is_error_on_console();

}  // namespace workbench
