#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

#include "RuleStore.h"

namespace workbench {

struct SqliteStoreOptions {
  /// What a new file is filled with. A file of a version that had no calendars gets its calendars, and settings of such
  /// a file get what the setting of the same name has.
  StoreContent first_content{};
  /// How long a call waits for another program that holds the file.
  std::chrono::milliseconds busy_timeout{3000};
  /// Whether a file that is missing or empty is created; if not, it fails with `missing`.
  bool may_create = true;
  /// Called with how much of the opening is done. Cancels it with `schedule::Cancelled`: a file then is as it was, and
  /// a new one empty.
  schedule::Progress progress{};
  /// What a new file is filled with instead of `first_content`. Then a file that holds a store fails with `exists`.
  const StoreCopy* copied = nullptr;
};

/// Opens the store in this file. A file that is missing or empty is created and filled in one transaction, its missing
/// folders too; a file of an older version is brought to this one. A file that is damaged, foreign or newer fails with
/// the error of that kind and is not touched. A file that cannot be written opens for reading, and each change then
/// fails with `read_only`.
std::unique_ptr<RuleStore> open_sqlite_store(const std::filesystem::path& path, const SqliteStoreOptions& options = {});

}  // namespace workbench
