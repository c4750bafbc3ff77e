#pragma once

#include <optional>
#include <utility>

#include "RuleRecord.h"
#include "StoreError.h"

namespace workbench {

/// The rule that was looked up by this number. Fails with `not_found` when there is none, and with `changed` when it
/// has another revision than the expected one.
inline StoredRule require_rule(std::optional<StoredRule> rule, long number, std::optional<Revision> expected) {
  if (!rule) throw rule_not_found(number);
  if (expected && *expected != rule->revision) throw rule_changed(rule->rule.name);
  return *std::move(rule);
}

/// The same for a setting. Fails with `setting_not_found` or `setting_changed`.
inline StoredSetting require_setting(std::optional<StoredSetting> stored, long number,
                                     std::optional<Revision> expected) {
  if (!stored) throw setting_not_found(number);
  if (expected && *expected != stored->revision) throw setting_changed(stored->setting.name);
  return *std::move(stored);
}

}  // namespace workbench
