#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "RuleChange.h"
#include "ServerSession.h"

namespace workbench {

// The table of changes of a server store, within a call of its session.

/// An id that no other change has: 32 random hexadecimal digits.
std::wstring new_change_id();

/// The counter of changes, which this statement gives.
std::int64_t read_counter(ServerSession& session, const std::wstring& sql);

/// Inserts a change with this id. What its transaction does from now on is recorded as part of it.
void insert_change(ServerSession& session, const std::wstring& id);

/// Returns whether the change with this id happened, and makes sure that it never will if it has not: what is left of
/// its transaction cannot insert the id any more. Waits for that transaction while it is under way, and throws if that
/// takes too long.
bool settle_change(ServerSession& session, const std::wstring& id);

/// Takes this id for something that is no change of records, if it is free.
void take_id(ServerSession& session, const std::wstring& id);

/// Whether the id is taken, whatever for.
bool is_id_taken(ServerSession& session, const std::wstring& id);

/// Every change that happened, in their order.
std::vector<StoredChange> select_all_changes(ServerSession& session);

/// Replaces the recorded changes with these.
void replace_changes(ServerSession& session, const std::vector<StoredChange>& changes);

/// What changes did to this rule, the oldest first. Throws `damaged` for a record that is not that of a rule.
std::vector<RuleChange> select_changes(ServerSession& session, long number);

}  // namespace workbench
