#pragma once

#include <filesystem>

#include "SqliteDatabase.h"
#include "SqliteRuleStore.h"

namespace workbench {

/// Opens the file of a store and brings it to the present version; see `open_sqlite_store`. A new file gets its tables
/// and their content in one transaction.
SqliteDatabase open_store_file(const std::filesystem::path& path, const SqliteStoreOptions& options);

}  // namespace workbench
