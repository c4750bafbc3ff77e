#pragma once

#include <windows.h>

#include <string>

namespace workbench {

/// Puts a text on the clipboard. Returns false, and changes nothing or empties it, if the system refuses.
bool try_copy(HWND owner, const std::wstring& text);

}  // namespace workbench
