#pragma once

#include <windows.h>

#include <string>

namespace base {

/// The text of a window of this process, whatever its length; empty when it has none. Throws `std::bad_alloc`.
std::wstring window_text(HWND window);

}  // namespace base
