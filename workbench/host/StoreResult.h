#pragma once

#include <windows.h>

#include "StoreError.h"

namespace workbench {

/// What a client of the host's objects is told of a store's refusal. Always a failure.
HRESULT store_result(StoreErrorKind kind) noexcept;

}  // namespace workbench
