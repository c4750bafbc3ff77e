#pragma once

#include <windows.h>

namespace snagtrap {

/// Writes the library's class with the path of this file, where a client that does not find the library by name looks.
/// Clients read the path as narrow text: one that the ANSI code page cannot spell is written in its short form. Returns
/// an HRESULT; that of ERROR_NO_UNICODE_TRANSLATION when the file has no short form.
HRESULT register_library();

/// Removes the class; S_OK also when it was not there.
HRESULT unregister_library();

}  // namespace snagtrap
