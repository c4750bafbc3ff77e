#pragma once

#include <string>

#include "RuleRecord.h"

namespace workbench {

// A rule that no store would keep is told as well: a choice out of its range reads as one that was not made.

/// How many days before the specified day a contract is rolled over.
std::wstring format_offset(const Rule& rule);

/// The day that the rule specifies.
std::wstring day_in_words(const Rule& rule);

/// Whether an expiration day on which the exchange is closed moves to the next trading day.
std::wstring move_in_words(const Rule& rule);

}  // namespace workbench
