#pragma once

#include <windows.h>

#include <string>

namespace platform {

/// The module that this code is linked into: the DLL, or the program in a test. Its resources are the module's own.
HINSTANCE module_instance() noexcept;

/// The full path of that module. Throws `_com_error` when the system does not give it.
std::wstring module_file_name();

}  // namespace platform
