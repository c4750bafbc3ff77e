#pragma once

#include <string>
#include <vector>

#include "DriverProfile.h"

namespace workbench {

/// Everything that depends on the kind of server. In a statement, {schema} stands for the schema of the store.
/// Parameters are in the order of the members' comments; a batch is a JSON array of records, whose keys are the
/// columns' names in small letters and `position`, which gives their order.
struct ServerDialect {
  odbc::DriverProfile driver;

  std::wstring begin_session;  ///< makes a commit durable and limits how long a session waits and keeps a lock
  std::wstring read_schema;    ///< gives the schema as it stands in a statement, or null, and whether texts are UTF-8
  std::wstring lock_creation;  ///< until the transaction ends, no other session creates or migrates this store
  std::wstring become_owner;   ///< until the transaction ends, new tables belong to the owner of the schema
  std::wstring count_tables;   ///< how many of the store's tables there are, and of `rule_store` with a version
  std::wstring read_version;   ///< gives the application and the version
  std::wstring write_version;  ///< application, version
  int first_version = 0;       ///< the version to which the first of the migrations leads
  std::vector<std::wstring> migrations;  ///< each leads to the next version. A step never changes once it was shipped

  /// What stands before the name of a rule in the text of a refusal, in any language, when another rule has that name.
  std::string duplicate_name;

  std::wstring lock_store;     ///< until the transaction ends, no other workbench changes the store; gives the counter
  std::wstring read_counter;   ///< the counter of changes
  std::wstring insert_change;  ///< id; what the transaction does from now on is recorded as part of this change
  std::wstring insert_void_change;  ///< id; takes the id for what is no change of records, if it is free
  std::wstring select_happened;     ///< id; gives 1 if the change happened and 0 if it is void
  std::wstring select_changes;      ///< a rule's number as text; gives user, time, and the old and the new rule as JSON

  /// Gives id, table, key, user, time, and the old and the new record as JSON, in the order of the changes and of their
  /// rows; table and key are null for a change without rows.
  std::wstring select_all_changes;

  /// Gives a rule as one text: its number, its revision and the numbers of `rule_columns`, a blank between each
  /// two, a colon, and the name.
  std::wstring select_rules;
  std::wstring select_rule;   ///< number; gives the same
  std::wstring insert_rule;   ///< name and numbers; gives the rule's number
  std::wstring update_rule;   ///< name and numbers, number, revision
  std::wstring delete_rule;   ///< number, revision
  std::wstring import_rules;  ///< a batch without two rules of one name; each changes the rule of its name or is added
  std::wstring insert_rules;  ///< a batch

  std::wstring select_settings;
  std::wstring select_setting;   ///< number
  std::wstring insert_setting;   ///< the setting's values; gives its number
  std::wstring update_setting;   ///< the setting's values, number, revision
  std::wstring delete_setting;   ///< number, revision
  std::wstring delete_settings;  ///< all of them
  std::wstring insert_settings;  ///< a batch

  std::wstring begin_snapshot;       ///< every further statement of the transaction reads the same snapshot
  std::wstring select_last_numbers;  ///< the last numbers of a rule and of a setting; 0 where none was given
  std::wstring copy_rules;           ///< a batch with the numbers and revisions
  std::wstring copy_settings;        ///< the same
  std::wstring set_last_numbers;     ///< of a rule, of a setting
  std::wstring delete_changes;       ///< all that is recorded
  std::wstring copy_changes;         ///< a batch of changes without their rows
  std::wstring copy_changed_rows;    ///< a batch of rows

  std::wstring select_calendars;
  std::wstring replace_calendars;   ///< a batch of calendars without their days
  std::wstring delete_closed_days;  ///< a batch of calendars: their days
  std::wstring insert_closed_days;  ///< a batch of days
  std::wstring delete_content;      ///< all rules, settings and calendars
};

/// PostgreSQL 13 or later.
const ServerDialect& postgres();

}  // namespace workbench
