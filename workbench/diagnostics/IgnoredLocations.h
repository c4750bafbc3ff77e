#pragma once

#include "Record.h"

namespace snagtrap {

/// Whether the user chose always to ignore reports of this location. The choice is stored as a value "FILE(LINE)" of
/// the key Ignored under the settings key, so that it holds for all programs of the user, in this session and later
/// ones, until the user takes it back in the window of recent reports or deletes the value.
bool is_ignored(const Location& location);

/// Stores the choice. Returns a Win32 error code.
LSTATUS always_ignore(const Location& location);

/// Takes back every such choice.
void forget_ignored_locations();

}  // namespace snagtrap
