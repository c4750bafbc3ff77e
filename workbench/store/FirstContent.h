#pragma once

#include "RuleRecord.h"

namespace workbench {

/// The futures rules, the symbol source settings that use them and the trading calendars with which a new store begins.
StoreContent first_content();

}  // namespace workbench
