#pragma once

#include "Progress.h"
#include "RuleRecord.h"
#include "SqliteDatabase.h"

namespace workbench {

/// Everything that the file holds at one moment. Called outside a transaction.
StoreCopy select_copy(const SqliteDatabase& database);

/// Puts everything that another store held into a new file, within a transaction. The changes that are recorded
/// afterwards are those of the other store.
void insert_copy(const SqliteDatabase& database, const StoreCopy& copy, const schedule::Progress& progress = {});

}  // namespace workbench
