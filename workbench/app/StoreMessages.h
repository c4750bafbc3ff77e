#pragma once

#include <string>

#include "RuleRecord.h"
#include "StoreError.h"

namespace workbench {

/// What the user reads about a refusal of the store.
std::wstring store_message(const StoreError& error);

/// What the user reads when a call of the plug-in is refused. A rule that it was to store is described in the message,
/// because the dialog in which it was entered has closed; null when it was to do something else.
std::wstring store_failure(const StoreError& error, const Rule* unsaved);

}  // namespace workbench
