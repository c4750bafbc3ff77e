#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "RuleRecord.h"

namespace workbench {

// Records as JSON objects, whose keys are the columns' names in small letters and whose texts are in their escaped
// form.

// Batches of records, as a statement of a server takes them in one parameter. `position` gives their order.

std::wstring rules_as_json(std::span<const Rule> rules);
std::wstring settings_as_json(std::span<const SymbolSourceSetting> settings);

/// The same with the numbers and revisions.
std::wstring stored_rules_as_json(std::span<const StoredRule> rules);
std::wstring stored_settings_as_json(std::span<const StoredSetting> settings);

std::wstring calendars_as_json(std::span<const StoredCalendar> calendars);

/// The closed days of these calendars.
std::wstring closed_days_as_json(std::span<const StoredCalendar> calendars);

std::wstring changes_as_json(std::span<const StoredChange> changes);

/// A row with the change that it belongs to.
struct RowOfChange {
  const StoredChange* change;
  const ChangedRow* row;
};

std::wstring changed_rows_as_json(std::span<const RowOfChange> rows);

// One record, as a store's table of changes keeps it, in UTF-8.

std::string record_as_json(const StoredRule& record);
std::string record_as_json(const StoredSetting& record);
/// The calendar's days stand in it as an array.
std::string record_as_json(const StoredCalendar& stored);

/// The same JSON without blanks and with its keys in their order, so that equal records have equal texts, whatever
/// store they come from. Nothing if the text is no JSON.
std::optional<std::string> normalized_json(std::string_view json);

/// The rule of such a record; nothing if the text is no record of a rule.
std::optional<Rule> try_rule_from_json(std::string_view json);

}  // namespace workbench
