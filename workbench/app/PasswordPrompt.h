#pragma once

#include "StoreLocation.h"

namespace workbench {

/// Asks for a password at the console. Throws `StoreLocationError` at once where there is none.
std::optional<EnteredPassword> ask_at_console(const PasswordRequest& request);

}  // namespace workbench
