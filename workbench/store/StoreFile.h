#pragma once

#include <filesystem>

#include "SqliteDatabase.h"
#include "SqliteRuleStore.h"

namespace workbench {

/// Opens the file of a store and brings it to the present version; see `open_sqlite_store`. A new file gets its tables
/// and what `fill` puts into them in one transaction.
SqliteDatabase open_store_file(const std::filesystem::path& path, std::chrono::milliseconds patience,
                               const std::function<void(const SqliteDatabase&)>& fill);

}  // namespace workbench
