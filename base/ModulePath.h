#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>

namespace base {

/// The module that this code is linked into: the DLL, or the program in a test. Its resources are the module's own.
HINSTANCE module_instance() noexcept;

/// The full path of a loaded module, in a buffer of the caller's; null means the process's executable. A path that does
/// not fit is cut off and fills the buffer. Empty when the system does not know the module.
std::wstring_view module_file_name(HMODULE module, std::span<wchar_t> buffer) noexcept;

/// The same at any length. Throws `_com_error` when the system does not know the module, and `std::bad_alloc`.
std::wstring module_file_name(HMODULE module = module_instance());

/// The path of a file beside the process's executable. Throws as `module_file_name` does.
std::wstring path_beside_program(std::wstring_view file_name);

}  // namespace base
