#pragma once

#include <optional>
#include <string>

#include "RuleRecord.h"

namespace workbench {

/// What one change did to one rule.
struct RuleChange {
  std::wstring user;             ///< who made it, as the system or the server knows them
  std::wstring time;             ///< when, in UTC, such as 2026-01-16T08:30:05.123Z
  std::optional<Rule> old_rule;  ///< nothing: the change added the rule
  std::optional<Rule> new_rule;  ///< nothing: the change deleted the rule

  bool operator==(const RuleChange&) const = default;
};

/// The user under whom this process runs; empty when the system does not say.
std::wstring process_user();

/// The time in the form of `RuleChange::time`.
std::wstring present_time();

}  // namespace workbench
