#pragma once

#include <filesystem>
#include <string>

namespace workbench {

/// The registry path of the settings of this program and its plug-ins, relative to the current user's key: composed of
/// the company and the product of the program's version block.
std::wstring settings_path();

/// Creates the key of the settings path. Without it plug-ins work all the same, so a failure is not reported.
void create_settings_key() noexcept;

/// The store that is used when the command line names none: a file under the user's local application data. Throws
/// `_com_error`.
std::filesystem::path default_store();

/// The program's semantic version, which is that of the whole system.
std::wstring program_version();

}  // namespace workbench
