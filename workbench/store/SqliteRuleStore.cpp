#include "SqliteRuleStore.h"

#include <optional>

#include "SqliteDatabase.h"
#include "StoreFile.h"

namespace workbench {

namespace {

/// `pattern` once for each number of a rule, with the column's name for every %, joined by ", ".
std::string for_each_column(std::string_view pattern) {
  std::string text;
  for (const RuleColumn& column : rule_columns) {
    if (!text.empty()) text += ", ";
    for (const char c : pattern) {
      if (c == '%')
        text += column.name;
      else
        text += c;
    }
  }
  return text;
}

std::string select_rules(std::string_view condition) {
  return "SELECT RuleID, Revision, RuleName, " + for_each_column("%") + " FROM rules " + std::string(condition);
}

StoredRule read_rule(const SqliteStatement& row) {
  StoredRule stored;
  stored.number = static_cast<long>(row.integer(0));
  stored.revision = row.integer(1);
  stored.rule.name = row.text(2);
  int index = 3;
  for (const RuleColumn& column : rule_columns) stored.rule.*column.value = static_cast<long>(row.integer(index++));
  return stored;
}

/// Binds the name and the numbers to the parameters from 1 on.
SqliteStatement& bind_rule(SqliteStatement& statement, const Rule& rule) {
  statement.bind(1, rule.name);
  int parameter = 2;
  for (const RuleColumn& column : rule_columns) statement.bind(parameter++, rule.*column.value);
  return statement;
}

constexpr int parameter_after_rule = 2 + static_cast<int>(rule_columns.size());

void refuse_duplicate(const SqliteDatabase& database, const std::wstring& name, long number) {
  SqliteStatement same = database.prepare("SELECT 1 FROM rules WHERE RuleName = ?1 AND RuleID <> ?2");
  if (same.bind(1, name).bind(2, number).step()) throw duplicate_rule_name(name);
}

SqliteStatement prepare_insert(const SqliteDatabase& database) {
  return database.prepare("INSERT INTO rules (RuleName, " + for_each_column("%") + ") VALUES (?, " +
                          for_each_column("?") + ") RETURNING RuleID");
}

StoredRule insert_rule(const SqliteDatabase& database, SqliteStatement& insert, const Rule& rule) {
  refuse_duplicate(database, rule.name, 0);
  bind_rule(insert, rule).step();
  StoredRule stored{static_cast<long>(insert.integer(0)), 1, rule};
  insert.run();
  return stored;
}

void insert_settings(const SqliteDatabase& database, const std::vector<SymbolSourceSetting>& settings) {
  database.execute("DELETE FROM symbol_source_settings");
  SqliteStatement insert = database.prepare("INSERT INTO symbol_source_settings (SettingName, RuleName) VALUES (?, ?)");
  for (const SymbolSourceSetting& setting : settings) {
    refuse_invalid(setting);
    insert.bind(1, setting.name).bind(2, setting.rule_name).run();
  }
}

void insert_content(const SqliteDatabase& database, const StoreContent& content) {
  database.execute("DELETE FROM rules");
  SqliteStatement insert = prepare_insert(database);
  for (const Rule& rule : content.rules) {
    refuse_invalid(rule);
    insert_rule(database, insert, rule);
  }
  insert_settings(database, content.settings);
}

void rename_in_settings(const SqliteDatabase& database, const std::wstring& from, const std::wstring& to) {
  database.prepare("UPDATE symbol_source_settings SET RuleName = ? WHERE RuleName = ?").bind(1, to).bind(2, from).run();
}

/// While it lives, calls do not wait for other programs.
class ScopedNoBusyWait {
 public:
  ScopedNoBusyWait(const SqliteDatabase& database, std::chrono::milliseconds patience)
      : database_(database), patience_(patience) {
    database_.set_busy_timeout({});
  }
  ScopedNoBusyWait(const ScopedNoBusyWait&) = delete;
  ScopedNoBusyWait& operator=(const ScopedNoBusyWait&) = delete;
  ~ScopedNoBusyWait() { database_.set_busy_timeout(patience_); }

 private:
  const SqliteDatabase& database_;
  std::chrono::milliseconds patience_;
};

class SqliteRuleStore final : public RuleStore {
 public:
  SqliteRuleStore(const std::filesystem::path& path, const SqliteStoreOptions& options)
      : patience_(options.patience),
        database_(open_store_file(path, options.patience,
                                  [&](const SqliteDatabase& file) { insert_content(file, options.first_content); })),
        data_version_(read_data_version()) {}

  std::vector<StoredRule> load_rules() override {
    std::vector<StoredRule> rules;
    SqliteStatement rows = database_.prepare(select_rules("ORDER BY RuleID"));
    while (rows.step()) rules.push_back(read_rule(rows));
    return rules;
  }

  std::optional<StoredRule> try_load_rule(long number) override {
    SqliteStatement row = database_.prepare(select_rules("WHERE RuleID = ?"));
    if (!row.bind(1, number).step()) return std::nullopt;
    return read_rule(row);
  }

  StoredRule add_rule(const Rule& rule) override {
    refuse_invalid(rule);
    StoredRule added;
    change([&] {
      SqliteStatement insert = prepare_insert(database_);
      added = insert_rule(database_, insert, rule);
    });
    return added;
  }

  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override {
    refuse_invalid(rule);
    StoredRule updated{number, 0, rule};
    change([&] {
      const StoredRule old = require_rule(number, expected);
      refuse_duplicate(database_, rule.name, number);
      updated.revision = old.revision + 1;
      rewrite(updated);
      if (old.rule.name != rule.name) rename_in_settings(database_, old.rule.name, rule.name);
    });
    return updated;
  }

  void delete_rule(long number, std::optional<Revision> expected) override {
    change([&] {
      const StoredRule old = require_rule(number, expected);
      SqliteStatement user = database_.prepare("SELECT 1 FROM symbol_source_settings WHERE RuleName = ?");
      if (user.bind(1, old.rule.name).step()) throw rule_in_use(old.rule.name);
      database_.prepare("DELETE FROM rules WHERE RuleID = ?").bind(1, number).run();
    });
  }

  std::vector<SymbolSourceSetting> load_settings() override {
    std::vector<SymbolSourceSetting> settings;
    SqliteStatement rows =
        database_.prepare("SELECT SettingName, RuleName FROM symbol_source_settings ORDER BY SettingID");
    while (rows.step()) settings.push_back({rows.text(0), rows.text(1)});
    return settings;
  }

  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override {
    change([&] { insert_settings(database_, settings); });
  }

  void replace_content(const StoreContent& content) override {
    change([&] { insert_content(database_, content); });
  }

  bool poll_for_changes() override {
    const auto found = read_data_version();
    if (!found || found == data_version_) return false;
    data_version_ = found;
    notify_subscribers();
    return true;
  }

 private:
  template <class Body>
  void change(const Body& body) {
    SqliteTransaction transaction(database_);
    body();
    transaction.commit();
    notify_subscribers();
  }

  StoredRule require_rule(long number, std::optional<Revision> expected) {
    std::optional<StoredRule> rule = try_load_rule(number);
    if (!rule) throw rule_not_found(number);
    if (expected && *expected != rule->revision) throw rule_changed(rule->rule.name);
    return *std::move(rule);
  }

  void rewrite(const StoredRule& stored) {
    SqliteStatement update = database_.prepare("UPDATE rules SET RuleName = ?, " + for_each_column("% = ?") +
                                               ", Revision = ? WHERE RuleID = ?");
    bind_rule(update, stored.rule)
        .bind(parameter_after_rule, stored.revision)
        .bind(parameter_after_rule + 1, stored.number)
        .run();
  }

  /// Counts the changes by other connections. A file that is held just now tells nothing: nobody waits for a change
  /// that is not made yet, and the next look sees it.
  std::optional<std::int64_t> read_data_version() {
    const ScopedNoBusyWait impatience(database_, patience_);
    try {
      return database_.integer("PRAGMA data_version");
    } catch (const StoreError& error) {
      if (error.kind() != StoreErrorKind::locked) throw;
      return std::nullopt;
    }
  }

  std::chrono::milliseconds patience_;
  SqliteDatabase database_;
  std::optional<std::int64_t> data_version_;
};

}  // namespace

std::unique_ptr<RuleStore> open_sqlite_store(const std::filesystem::path& path, const SqliteStoreOptions& options) {
  return std::make_unique<SqliteRuleStore>(path, options);
}

}  // namespace workbench
