#pragma once

#include <windows.h>

#include "StoreError.h"

namespace workbench {

/// The HRESULT that a client of the host's objects gets for a store error. Always a failure.
HRESULT store_result(StoreErrorKind kind) noexcept;

}  // namespace workbench
