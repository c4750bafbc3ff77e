#pragma once

#include <windows.h>

#include <string>

namespace snagtrap {

/// A text of the string table; empty when there is none.
std::wstring load_text(UINT id);

/// The system's text for a Win32 error or an HRESULT, without line ends; empty when it has none.
std::wstring system_message(DWORD code);

}  // namespace snagtrap
