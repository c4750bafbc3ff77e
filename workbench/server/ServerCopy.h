#pragma once

#include "RuleRecord.h"
#include "ServerSession.h"

namespace workbench {

/// Everything that the store holds. Must be called within a transaction that reads one snapshot; see
/// `ServerDialect::begin_snapshot`.
StoreCopy select_copy(ServerSession& session);

/// Puts everything that another store held into a new one, within a transaction. The changes that are recorded
/// afterwards are those of the other store.
void insert_copy(ServerSession& session, const StoreCopy& copy);

}  // namespace workbench
