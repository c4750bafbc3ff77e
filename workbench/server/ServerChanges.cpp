#include "ServerChanges.h"

#include <random>

#include "JsonRecords.h"
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

bool settle_change(ServerSession& session, const std::wstring& id) {
  session.prepare(session.sql().insert_void_change).bind(1, id).execute();
  odbc::OdbcStatement row = session.prepare(session.sql().select_happened);
  row.bind(1, id).execute();
  if (!row.fetch()) session.fail(StoreErrorKind::damaged, "a change has no id");
  return row.integer(0) == 1;
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
