#include "ServerChanges.h"

#include <random>

#include "JsonRecords.h"
#include "ServerBatches.h"
#include "TextEncoding.h"

namespace workbench {

namespace {

std::optional<Rule> read_rule(ServerSession& session, odbc::OdbcStatement& row, int column) {
  const std::optional<std::wstring> json = row.try_text(column);
  if (!json) return std::nullopt;
  std::optional<Rule> rule = try_rule_from_json(base::to_utf8(*json));
  if (!rule) session.fail(StoreErrorKind::damaged, "no record of a rule: " + base::to_utf8(*json));
  return rule;
}

std::string read_json(ServerSession& session, odbc::OdbcStatement& row, int column) {
  const std::optional<std::wstring> text = row.try_text(column);
  if (!text) return {};
  const std::optional<std::string> json = normalized_json(base::to_utf8(*text));
  if (!json) session.fail(StoreErrorKind::damaged, "no record: " + base::to_utf8(*text));
  return *json;
}

}  // namespace

std::wstring new_change_id() {
  std::random_device random;
  std::uniform_int_distribution<std::size_t> digit(0, 15);
  std::wstring id(32, L'0');
  for (wchar_t& character : id) character = L"0123456789abcdef"[digit(random)];
  return id;
}

void insert_change(ServerSession& session, const std::wstring& id) {
  session.prepare(session.sql().insert_change).bind(1, id).execute();
}

std::int64_t read_counter(ServerSession& session, const std::wstring& sql) {
  odbc::OdbcStatement row = session.prepare(sql);
  row.execute();
  if (!row.fetch()) session.fail(StoreErrorKind::damaged, "the store has no version");
  return row.integer(0);
}

void take_id(ServerSession& session, const std::wstring& id) {
  session.prepare(session.sql().insert_void_change).bind(1, id).execute();
}

bool is_id_taken(ServerSession& session, const std::wstring& id) {
  odbc::OdbcStatement row = session.prepare(session.sql().select_happened);
  row.bind(1, id).execute();
  return row.fetch();
}

bool settle_change(ServerSession& session, const std::wstring& id) {
  take_id(session, id);
  odbc::OdbcStatement row = session.prepare(session.sql().select_happened);
  row.bind(1, id).execute();
  if (!row.fetch()) session.fail(StoreErrorKind::damaged, "a change has no id");
  return row.integer(0) == 1;
}

std::vector<StoredChange> select_all_changes(ServerSession& session) {
  std::vector<StoredChange> changes;
  odbc::OdbcStatement rows = session.prepare(session.sql().select_all_changes);
  rows.execute();
  while (rows.fetch()) {
    const std::string id = base::to_utf8(rows.text(0));
    const std::optional<std::wstring> table = rows.try_text(1);
    const std::optional<std::wstring> key = rows.try_text(2);
    std::wstring user = rows.text(3);
    std::wstring time = rows.text(4);
    if (changes.empty() || changes.back().id != id) changes.push_back({id, std::move(user), std::move(time), {}});
    if (table && key)
      changes.back().rows.push_back(
          {base::to_utf8(*table), base::to_utf8(*key), read_json(session, rows, 5), read_json(session, rows, 6)});
  }
  return changes;
}

void replace_changes(ServerSession& session, const std::vector<StoredChange>& changes) {
  session.execute(session.sql().delete_changes);
  insert_in_batches(session, session.sql().copy_changes, changes, &changes_as_json);
  std::vector<RowOfChange> rows;
  for (const StoredChange& change : changes)
    for (const ChangedRow& row : change.rows) rows.push_back({&change, &row});
  insert_in_batches(session, session.sql().copy_changed_rows, rows, &changed_rows_as_json);
}

std::vector<RuleChange> select_changes(ServerSession& session, long number) {
  std::vector<RuleChange> changes;
  odbc::OdbcStatement rows = session.prepare(session.sql().select_changes);
  rows.bind(1, std::to_wstring(number)).execute();
  while (rows.fetch()) {
    RuleChange& change = changes.emplace_back();
    change.user = rows.text(0);
    change.time = rows.text(1);
    change.old_rule = read_rule(session, rows, 2);
    change.new_rule = read_rule(session, rows, 3);
  }
  return changes;
}

}  // namespace workbench
