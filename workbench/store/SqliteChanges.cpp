#include "SqliteChanges.h"

#include "JsonRecords.h"

namespace workbench {

namespace {

struct RecordName {
  const char* table;
  std::string key;
};

RecordName name_of(const StoredRule& stored) { return {"rules", std::to_string(stored.number)}; }
RecordName name_of(const StoredSetting& stored) { return {"symbol_source_settings", std::to_string(stored.number)}; }
RecordName name_of(const StoredCalendar& stored) { return {"calendars", stored.calendar.name}; }

constexpr char insert_row[] =
    "INSERT INTO changed_rows (ChangeNumber, TableName, RowKey, OldRow, NewRow) "
    "VALUES ((SELECT max(ChangeNumber) FROM changes), ?, ?, nullif(?, ''), nullif(?, ''))";

std::string read_json(const SqliteDatabase& database, const SqliteStatement& row, int column) {
  const std::string text = row.utf8(column);
  if (text.empty()) return {};
  const std::optional<std::string> json = normalized_json(text);
  if (!json) database.fail_damaged("no record: " + text);
  return *json;
}

std::optional<Rule> read_rule(const SqliteDatabase& database, const SqliteStatement& row, int column) {
  const std::string json = row.utf8(column);
  if (json.empty()) return std::nullopt;
  std::optional<Rule> rule = try_rule_from_json(json);
  if (!rule) database.fail_damaged("no record of a rule: " + json);
  return rule;
}

}  // namespace

void begin_change(const SqliteDatabase& database) {
  database.prepare("INSERT INTO changes (UserName) VALUES (?)").bind(1, process_user()).run();
}

template <class Record>
void record_change(const SqliteDatabase& database, const std::optional<Record>& old_record,
                   const std::optional<Record>& new_record) {
  const RecordName name = name_of(new_record ? *new_record : *old_record);
  database.prepare(insert_row)
      .bind_utf8(1, name.table)
      .bind_utf8(2, name.key)
      .bind_utf8(3, old_record ? record_as_json(*old_record) : std::string())
      .bind_utf8(4, new_record ? record_as_json(*new_record) : std::string())
      .run();
}

template void record_change(const SqliteDatabase&, const std::optional<StoredRule>&, const std::optional<StoredRule>&);
template void record_change(const SqliteDatabase&, const std::optional<StoredSetting>&,
                            const std::optional<StoredSetting>&);
template void record_change(const SqliteDatabase&, const std::optional<StoredCalendar>&,
                            const std::optional<StoredCalendar>&);

std::vector<StoredChange> select_all_changes(const SqliteDatabase& database) {
  std::vector<StoredChange> changes;
  SqliteStatement rows = database.prepare(
      "SELECT ChangeID, UserName, ChangedAt, TableName, RowKey, OldRow, NewRow FROM changes "
      "LEFT JOIN changed_rows USING (ChangeNumber) ORDER BY ChangeNumber, RowNumber");
  while (rows.step()) {
    const std::string id = rows.utf8(0);
    if (changes.empty() || changes.back().id != id) changes.push_back({id, rows.text(1), rows.text(2), {}});
    const std::string table = rows.utf8(3);
    if (table.empty()) continue;  // the change left every record as it was
    changes.back().rows.push_back({table, rows.utf8(4), read_json(database, rows, 5), read_json(database, rows, 6)});
  }
  return changes;
}

void insert_stored(const SqliteDatabase& database, const StoredChange& change) {
  database.prepare("INSERT INTO changes (ChangeID, UserName, ChangedAt) VALUES (?, ?, ?)")
      .bind_utf8(1, change.id)
      .bind(2, change.user)
      .bind(3, change.time)
      .run();
  SqliteStatement insert = database.prepare(insert_row);
  for (const ChangedRow& row : change.rows)
    insert.bind_utf8(1, row.table).bind_utf8(2, row.key).bind_utf8(3, row.old_row).bind_utf8(4, row.new_row).run();
}

std::vector<RuleChange> select_changes(const SqliteDatabase& database, long number) {
  std::vector<RuleChange> changes;
  SqliteStatement rows = database.prepare(
      "SELECT UserName, ChangedAt, OldRow, NewRow FROM changed_rows JOIN changes USING (ChangeNumber) "
      "WHERE TableName = 'rules' AND RowKey = ? ORDER BY RowNumber");
  rows.bind_utf8(1, std::to_string(number));
  while (rows.step())
    changes.push_back({rows.text(0), rows.text(1), read_rule(database, rows, 2), read_rule(database, rows, 3)});
  return changes;
}

}  // namespace workbench
