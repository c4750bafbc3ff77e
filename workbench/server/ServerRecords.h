#pragma once

#include <optional>
#include <vector>

#include "Progress.h"
#include "RuleRecord.h"
#include "ServerSession.h"

namespace workbench {

// The records of a server store as statements, within a call of its session. What changes the store is called within a
// transaction. Records are checked by the caller.

std::vector<StoredRule> select_rules(ServerSession& session);
std::optional<StoredRule> select_rule(ServerSession& session, long number);

/// Returns the number of the new rule. Throws `duplicate_name`.
long insert_rule(ServerSession& session, const Rule& rule);

/// Rewrites this revision of a rule and returns whether it was there. Throws `duplicate_name`.
bool update_rule(ServerSession& session, const StoredRule& old, const Rule& rule);

/// Deletes this revision of the rule and returns whether it was there. Throws `in_use`.
bool delete_rule(ServerSession& session, const StoredRule& stored);

std::vector<StoredSetting> select_settings(ServerSession& session);
std::optional<StoredSetting> select_setting(ServerSession& session, long number);
long insert_setting(ServerSession& session, const SymbolSourceSetting& setting);
bool update_setting(ServerSession& session, long number, Revision revision, const SymbolSourceSetting& setting);
bool delete_setting(ServerSession& session, long number, Revision revision);

/// Throws `damaged` if the store holds a calendar that no client could have stored.
std::vector<StoredCalendar> select_calendars(ServerSession& session);

/// Replaces the calendar of the same name with each of these, or adds it.
void replace_calendars(ServerSession& session, const std::vector<StoredCalendar>& calendars);

/// Stores rules under their names; see `RuleStore::import_records`. Many rules go in one statement.
void import_rules(ServerSession& session, const std::vector<Rule>& rules, const schedule::Progress& progress);

void replace_settings(ServerSession& session, const std::vector<SymbolSourceSetting>& settings,
                      const schedule::Progress& progress = {});

/// Adds these records with their numbers and revisions.
void insert_stored(ServerSession& session, const std::vector<StoredRule>& rules);
void insert_stored(ServerSession& session, const std::vector<StoredSetting>& settings);

/// Adds this content to an empty store.
void insert_content(ServerSession& session, const StoreContent& content);

}  // namespace workbench
