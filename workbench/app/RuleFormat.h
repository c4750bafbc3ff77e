#pragma once

#include <string>

#include "RuleRecord.h"

namespace workbench {

// Out-of-range values are formatted as "not chosen".

/// How many days before the specified day a contract is rolled over.
std::wstring format_offset(const Rule& rule);

/// The day that the rule specifies.
std::wstring format_rule_day(const Rule& rule);

/// Whether an expiration day on which the exchange is closed moves to the next trading day.
std::wstring format_move(const Rule& rule);

}  // namespace workbench
