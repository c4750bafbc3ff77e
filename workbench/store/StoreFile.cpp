#include "StoreFile.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <vector>

#include "SqliteChanges.h"
#include "SqliteCopy.h"
#include "SqliteRecords.h"
#include "StoreError.h"

namespace workbench {

namespace {

/// What a SQLite file says of itself in its header.
struct Identity {
  std::uint32_t application = 0;
  std::uint32_t version = 0;
};

constexpr char sqlite_signature[] = "SQLite format 3";  // with its null
constexpr std::uint32_t store_application = 0x7A644552;

/// The step at index n leads from version n to version n + 1; version 0 is an empty file. Users have files of every
/// version, so a shipped step is never changed.
constexpr std::array migrations{
    R"sql(
      CREATE TABLE rules (
        RuleID INTEGER PRIMARY KEY AUTOINCREMENT CHECK (RuleID BETWEEN 1 AND 2147483647),
        RuleName TEXT NOT NULL UNIQUE COLLATE BINARY CHECK (length(CAST(RuleName AS BLOB)) BETWEEN 1 AND 765),
        RollOffset INTEGER NOT NULL CHECK (RollOffset BETWEEN 0 AND 99),
        DayType INTEGER NOT NULL CHECK (DayType BETWEEN 0 AND 1),
        DayMode INTEGER NOT NULL CHECK (DayMode BETWEEN 0 AND 1),
        DayOfMonth INTEGER NOT NULL CHECK (DayOfMonth BETWEEN 1 AND 31),
        DayMonth INTEGER NOT NULL CHECK (DayMonth BETWEEN 0 AND 2),
        WeekOrdinal INTEGER NOT NULL CHECK (WeekOrdinal BETWEEN 1 AND 5),
        Weekday INTEGER NOT NULL CHECK (Weekday BETWEEN 0 AND 6),
        WeekdayMonth INTEGER NOT NULL CHECK (WeekdayMonth BETWEEN 0 AND 2),
        MoveToNextTradingDay INTEGER NOT NULL CHECK (MoveToNextTradingDay BETWEEN 0 AND 1)
      ) STRICT;
    )sql",
    R"sql(
      CREATE TABLE symbol_source_settings (
        SettingID INTEGER PRIMARY KEY,
        SettingName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(SettingName AS BLOB)) BETWEEN 1 AND 765),
        RuleName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(RuleName AS BLOB)) <= 765)
      ) STRICT;
      CREATE INDEX symbol_source_settings_by_rule ON symbol_source_settings (RuleName);
    )sql",
    R"sql(
      ALTER TABLE rules ADD COLUMN Revision INTEGER NOT NULL DEFAULT 1 CHECK (Revision >= 1);
    )sql",
    R"sql(
      ALTER TABLE symbol_source_settings RENAME TO settings_without_numbers;
      DROP INDEX symbol_source_settings_by_rule;
      CREATE TABLE symbol_source_settings (
        SettingID INTEGER PRIMARY KEY AUTOINCREMENT CHECK (SettingID BETWEEN 1 AND 2147483647),
        SettingName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(SettingName AS BLOB)) BETWEEN 1 AND 765),
        RuleName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(RuleName AS BLOB)) <= 765),
        CalendarName TEXT NOT NULL DEFAULT '' COLLATE BINARY CHECK (length(CAST(CalendarName AS BLOB)) <= 255),
        Months TEXT NOT NULL DEFAULT '' CHECK (length(Months) <= 12 AND Months NOT GLOB '*[^FGHJKMNQUVXZ]*'),
        LastTradingDay INTEGER NOT NULL DEFAULT 0 CHECK (LastTradingDay BETWEEN 0 AND 1),
        Revision INTEGER NOT NULL DEFAULT 1 CHECK (Revision >= 1)
      ) STRICT;
      CREATE INDEX symbol_source_settings_by_rule ON symbol_source_settings (RuleName);
      INSERT INTO symbol_source_settings (SettingName, RuleName)
        SELECT SettingName, RuleName FROM settings_without_numbers ORDER BY SettingID;
      DROP TABLE settings_without_numbers;
      CREATE TABLE calendars (
        CalendarName TEXT PRIMARY KEY COLLATE BINARY CHECK (length(CAST(CalendarName AS BLOB)) BETWEEN 1 AND 255),
        Title TEXT NOT NULL,
        Covers TEXT NOT NULL,
        Source TEXT NOT NULL,
        FirstDay TEXT NOT NULL CHECK (FirstDay GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]'),
        LastDay TEXT NOT NULL CHECK (LastDay GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]'),
        Weekend INTEGER NOT NULL CHECK (Weekend BETWEEN 0 AND 126),
        ShippedVersion INTEGER NOT NULL CHECK (ShippedVersion BETWEEN 0 AND 2147483647),
        CHECK (FirstDay <= LastDay)
      ) STRICT, WITHOUT ROWID;
      CREATE TABLE closed_days (
        CalendarName TEXT NOT NULL COLLATE BINARY,
        Day TEXT NOT NULL CHECK (Day GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]'),
        Reason TEXT NOT NULL,
        PRIMARY KEY (CalendarName, Day)
      ) STRICT, WITHOUT ROWID;
    )sql",
    R"sql(
      CREATE TABLE changes (
        ChangeNumber INTEGER PRIMARY KEY AUTOINCREMENT,
        ChangeID TEXT NOT NULL UNIQUE DEFAULT (lower(hex(randomblob(16)))) CHECK (length(ChangeID) = 32),
        UserName TEXT NOT NULL,
        ChangedAt TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ', 'now'))
          CHECK (ChangedAt GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:[0-6][0-9].[0-9]*Z')
      ) STRICT;
      CREATE TABLE changed_rows (
        RowNumber INTEGER PRIMARY KEY,
        ChangeNumber INTEGER NOT NULL,
        TableName TEXT NOT NULL CHECK (TableName IN ('rules', 'symbol_source_settings', 'calendars', 'closed_days')),
        RowKey TEXT NOT NULL,
        OldRow TEXT,
        NewRow TEXT,
        CHECK (OldRow IS NOT NULL OR NewRow IS NOT NULL)
      ) STRICT;
      CREATE INDEX changed_rows_by_record ON changed_rows (TableName, RowKey);
    )sql",
};
/// Files of earlier versions have no calendars.
constexpr std::uint32_t version_of_calendars = 4;
constexpr auto present_version = static_cast<std::uint32_t>(migrations.size());

[[noreturn]] void refuse(StoreErrorKind kind, const std::filesystem::path& path, const std::string& detail) {
  throw StoreError(kind, path.native(), detail);
}

void refuse_unless_ours(const Identity& identity, const std::filesystem::path& path) {
  if (identity.application != store_application)
    refuse(StoreErrorKind::foreign, path, "application id " + std::to_string(identity.application));
  if (identity.version > present_version)
    refuse(StoreErrorKind::newer, path, "version " + std::to_string(identity.version));
}

std::uint32_t big_endian(const char* bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}

bool has_content(const std::filesystem::path& path) {
  std::error_code missing;
  const auto size = std::filesystem::file_size(path, missing);
  return !missing && size > 0;
}

/// Reads the file's first bytes before SQLite opens it, because SQLite may recover the file of another program.
void refuse_foreign_file(const std::filesystem::path& path) {
  std::error_code missing;
  if (std::filesystem::is_directory(path, missing)) refuse(StoreErrorKind::unavailable, path, "a folder");
  // Only SQLite can read the header of a file with an unfinished change: it first restores what the journal holds.
  if (!has_content(path) || has_content(path.native() + L"-journal")) return;
  std::ifstream file(path, std::ios::binary);
  if (!file) return;  // SQLite cannot open it either, and says why
  std::array<char, 100> header{};
  file.read(header.data(), header.size());
  if (!std::equal(std::begin(sqlite_signature), std::end(sqlite_signature), header.begin()))
    refuse(StoreErrorKind::foreign, path, "no SQLite header");
  if (!file) refuse(StoreErrorKind::damaged, path, "the header is cut short");
  refuse_unless_ours({big_endian(&header[68]), big_endian(&header[60])}, path);
}

Identity read_identity(const SqliteDatabase& database) {
  return {static_cast<std::uint32_t>(database.integer("PRAGMA application_id")),
          static_cast<std::uint32_t>(database.integer("PRAGMA user_version"))};
}

bool is_new(const SqliteDatabase& database) {
  return read_identity(database).application == 0 && database.integer("SELECT count(*) FROM sqlite_schema") == 0;
}

void refuse_damaged(const SqliteDatabase& database, const std::filesystem::path& path) {
  SqliteStatement check = database.prepare("PRAGMA integrity_check(1)");
  if (!check.step() || check.text(0) != L"ok")
    refuse(StoreErrorKind::damaged, path, "the file failed its integrity check");
  // The check takes zeros for the bytes that are missing at the end of the last page.
  const std::int64_t size = database.integer("PRAGMA page_count") * database.integer("PRAGMA page_size");
  std::error_code unknown;
  if (std::filesystem::file_size(path, unknown) < static_cast<std::uintmax_t>(size))
    refuse(StoreErrorKind::damaged, path, "the file is cut short");
}

/// Reads the whole file once. What a slow disk takes is waited for here, part by part, and not in the integrity check,
/// which reads the same in one go and cannot be cancelled meanwhile.
void read_ahead(const std::filesystem::path& path, const schedule::Progress& progress) {
  std::error_code missing;
  const std::uintmax_t size = std::filesystem::file_size(path, missing);
  if (!progress || missing) return;
  std::ifstream file(path, std::ios::binary);
  std::vector<char> part(1 << 16);
  for (std::uintmax_t done = 0; done < size && file.read(part.data(), static_cast<std::streamsize>(part.size()));
       done += part.size())
    schedule::advance(progress, done, size);
}

void migrate(const SqliteDatabase& database, const std::filesystem::path& path, const SqliteStoreOptions& options) {
  SqliteTransaction transaction(database);
  // Another program may have been here first.
  const bool fresh = is_new(database);
  if (!fresh) refuse_unless_ours(read_identity(database), path);
  if (!fresh && options.copied) refuse(StoreErrorKind::exists, path, "another program created a store meanwhile");
  const std::uint32_t old_version = read_identity(database).version;
  for (std::uint32_t version = old_version; version < present_version; ++version) database.execute(migrations[version]);
  database.execute(("PRAGMA application_id = " + std::to_string(store_application)).c_str());
  database.execute(("PRAGMA user_version = " + std::to_string(present_version)).c_str());
  begin_change(database);
  const schedule::Progress filling = schedule::part_of(options.progress, 80, 100);
  if (fresh && options.copied)
    insert_copy(database, *options.copied, filling);
  else if (fresh)
    replace_content(database, options.first_content, filling);
  else if (old_version < version_of_calendars)
    complete_content(database, options.first_content);
  transaction.commit();
}

}  // namespace

SqliteDatabase open_store_file(const std::filesystem::path& path, const SqliteStoreOptions& options) {
  refuse_foreign_file(path);
  if (!options.may_create && !has_content(path)) refuse(StoreErrorKind::missing, path, "there is no such file");
  std::error_code refused;  // SQLite then fails on the missing folder and says why
  std::filesystem::create_directories(path.parent_path(), refused);
  read_ahead(path, schedule::part_of(options.progress, 0, 40));
  SqliteDatabase database(path, options.busy_timeout);
  database.set_progress(schedule::part_of(options.progress, 40, 60));
  database.execute("PRAGMA synchronous = EXTRA; PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF");
  if (!is_new(database)) {
    refuse_unless_ours(read_identity(database), path);
    refuse_damaged(database, path);
    if (options.copied) refuse(StoreErrorKind::exists, path, "there is a store");
  }
  database.set_progress(schedule::part_of(options.progress, 60, 80));
  if (read_identity(database).version < present_version) migrate(database, path, options);
  database.set_progress({});
  return database;
}

}  // namespace workbench
