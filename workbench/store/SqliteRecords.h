#pragma once

#include <optional>
#include <vector>

#include "Progress.h"
#include "RuleRecord.h"
#include "SqliteDatabase.h"

namespace workbench {

// The records of a store file as SQL statements. What changes the file refuses invalid records, records the change and
// is called within a transaction, after `begin_change`.

std::vector<StoredRule> select_rules(const SqliteDatabase& database);
std::optional<StoredRule> select_rule(const SqliteDatabase& database, long number);

/// Throws `duplicate_name` if a rule other than `number` has this name.
void refuse_duplicate(const SqliteDatabase& database, const std::wstring& name, long number);

StoredRule insert_rule(const SqliteDatabase& database, const Rule& rule);

/// Adds a rule with its number and revision.
void insert_stored(const SqliteDatabase& database, const StoredRule& stored);

/// Rewrites the rule with the number of `updated`, its revision too.
void rewrite_rule(const SqliteDatabase& database, const StoredRule& old, const StoredRule& updated);

void delete_rule(const SqliteDatabase& database, const StoredRule& stored);

std::vector<StoredSetting> select_settings(const SqliteDatabase& database);
std::optional<StoredSetting> select_setting(const SqliteDatabase& database, long number);
StoredSetting insert_setting(const SqliteDatabase& database, const SymbolSourceSetting& setting);

/// Adds a setting with its number and revision.
void insert_stored(const SqliteDatabase& database, const StoredSetting& stored);

void rewrite_setting(const SqliteDatabase& database, const StoredSetting& old, const StoredSetting& updated);
void delete_setting(const SqliteDatabase& database, const StoredSetting& stored);

/// Gives the settings that use the rule its new name.
void rename_in_settings(const SqliteDatabase& database, const std::wstring& from, const std::wstring& to);

/// Throws `damaged` if the file holds a calendar that no version could have stored.
std::vector<StoredCalendar> select_calendars(const SqliteDatabase& database);

/// Replaces the calendar of the same name with each of these, or adds it.
void replace_calendars(const SqliteDatabase& database, const std::vector<StoredCalendar>& calendars);

/// Stores rules under their names; see `RuleStore::import_records`.
void import_rules(const SqliteDatabase& database, const std::vector<Rule>& rules, const schedule::Progress& progress);

void replace_settings(const SqliteDatabase& database, const std::vector<SymbolSourceSetting>& settings,
                      const schedule::Progress& progress = {});
void replace_content(const SqliteDatabase& database, const StoreContent& content,
                     const schedule::Progress& progress = {});

/// Gives a file that had no calendars yet those of this content, and its settings what those of the same name have.
void complete_content(const SqliteDatabase& database, const StoreContent& content);

}  // namespace workbench
