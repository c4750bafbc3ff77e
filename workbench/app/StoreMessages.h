#pragma once

#include <string>

#include "StoreError.h"

namespace workbench {

/// What the user reads about a refusal of the store.
std::wstring store_message(const StoreError& error);

}  // namespace workbench
