#pragma once

#include <span>
#include <string>

#include "RuleRecord.h"

namespace workbench {

// Batches of records, as a statement takes them in one parameter; see `ServerDialect`.

std::wstring rules_as_json(std::span<const Rule> rules);
std::wstring settings_as_json(std::span<const SymbolSourceSetting> settings);

/// The same with the numbers and revisions.
std::wstring stored_rules_as_json(std::span<const StoredRule> rules);
std::wstring stored_settings_as_json(std::span<const StoredSetting> settings);

std::wstring calendars_as_json(std::span<const StoredCalendar> calendars);

/// The closed days of these calendars.
std::wstring closed_days_as_json(std::span<const StoredCalendar> calendars);

}  // namespace workbench
