#pragma once

#include "Record.h"

namespace snagtrap {

/// The places that the user chose always to ignore: values "FILE(LINE)" of the key Ignored under the settings key, so
/// that the choice holds for all programs of the user, in this session and later ones, until it is taken back in the
/// window of recent reports or by deleting the value.
bool is_ignored(const Place& place);

/// Answers a Win32 error when the choice cannot be stored.
LSTATUS always_ignore(const Place& place);

void forget_ignored_places();

}  // namespace snagtrap
