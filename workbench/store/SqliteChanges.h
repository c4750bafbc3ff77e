#pragma once

#include <optional>
#include <string>
#include <vector>

#include "RuleChange.h"
#include "SqliteDatabase.h"

namespace workbench {

// The table of changes of a store file, within a transaction.

/// Begins a change by the user of this process. The rows that are recorded from now on belong to it.
void begin_change(const SqliteDatabase& database);

/// Records what the change did to a rule, a setting or a calendar: it was added without `old_record`, and deleted
/// without `new_record`.
template <class Record>
void record_change(const SqliteDatabase& database, const std::optional<Record>& old_record,
                   const std::optional<Record>& new_record);

/// Every change, in the order in which they happened. Throws `damaged` for a record that is no JSON.
std::vector<StoredChange> select_all_changes(const SqliteDatabase& database);

/// Adds a change of another store, within a transaction that records nothing itself.
void insert_stored(const SqliteDatabase& database, const StoredChange& change);

/// What changes did to this rule, the oldest first. Throws `damaged` for a record that no version could have stored.
std::vector<RuleChange> select_changes(const SqliteDatabase& database, long number);

}  // namespace workbench
