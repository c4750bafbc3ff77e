#pragma once

#include "RuleRecord.h"

namespace workbench {

/// The futures rules, and the symbol source settings that use them, with which a new store begins.
StoreContent first_content();

}  // namespace workbench
