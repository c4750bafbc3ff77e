#pragma once

#include <string>

#include "StoreError.h"

namespace workbench {

/// What a state of five characters means for the user of a store.
StoreErrorKind server_error_kind(const std::string& state) noexcept;

/// Whether the connection may be used after an error of this kind.
bool keeps_connection(StoreErrorKind kind) noexcept;

}  // namespace workbench
