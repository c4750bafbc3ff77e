#pragma once

#include <span>
#include <string>

#include "Commands.h"

namespace workbench {

/// Whether these arguments ask for a command about dates or about the content of a store, which needs no window.
bool is_console_command(std::span<const std::wstring> arguments);

/// Runs such a command: data goes to the standard output, messages go to the error stream in the chosen language.
/// Ctrl+C cancels it with nothing half done.
schedule::ExitCode run_console_command(std::span<const std::wstring> arguments);

}  // namespace workbench
