#include "SqliteRuleStore.h"

#include <optional>

#include "ExpectedRevision.h"
#include "SqliteChanges.h"
#include "SqliteCopy.h"
#include "SqliteDatabase.h"
#include "SqliteRecords.h"
#include "StoreFile.h"

namespace workbench {

namespace {

/// While it lives, calls do not wait for other programs.
class ScopedNoBusyWait {
 public:
  ScopedNoBusyWait(const SqliteDatabase& database, std::chrono::milliseconds busy_timeout)
      : database_(database), busy_timeout_(busy_timeout) {
    database_.set_busy_timeout({});
  }
  ScopedNoBusyWait(const ScopedNoBusyWait&) = delete;
  ScopedNoBusyWait& operator=(const ScopedNoBusyWait&) = delete;
  ~ScopedNoBusyWait() { database_.set_busy_timeout(busy_timeout_); }

 private:
  const SqliteDatabase& database_;
  std::chrono::milliseconds busy_timeout_;
};

class SqliteRuleStore final : public RuleStore {
 public:
  SqliteRuleStore(const std::filesystem::path& path, const SqliteStoreOptions& options)
      : busy_timeout_(options.busy_timeout),
        database_(open_store_file(path, options)),
        data_version_(read_data_version()) {}

  std::vector<StoredRule> load_rules() override { return select_rules(database_); }

  std::optional<StoredRule> try_load_rule(long number) override { return select_rule(database_, number); }

  StoredRule add_rule(const Rule& rule) override {
    refuse_invalid(rule);
    StoredRule added;
    change([&] { added = insert_rule(database_, rule); });
    return added;
  }

  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override {
    refuse_invalid(rule);
    StoredRule updated{number, 0, rule};
    change([&] {
      const StoredRule old = require_rule(number, expected);
      refuse_duplicate(database_, rule.name, number);
      updated.revision = old.revision + 1;
      rewrite_rule(database_, old, updated);
      if (old.rule.name != rule.name) rename_in_settings(database_, old.rule.name, rule.name);
    });
    return updated;
  }

  void delete_rule(long number, std::optional<Revision> expected) override {
    change([&] {
      const StoredRule old = require_rule(number, expected);
      SqliteStatement user = database_.prepare("SELECT 1 FROM symbol_source_settings WHERE RuleName = ?");
      if (user.bind(1, old.rule.name).step()) throw rule_in_use(old.rule.name);
      workbench::delete_rule(database_, old);
    });
  }

  std::vector<RuleChange> load_changes(long number) override { return select_changes(database_, number); }

  std::vector<StoredSetting> load_settings() override { return select_settings(database_); }

  StoredSetting add_setting(const SymbolSourceSetting& setting) override {
    refuse_invalid(setting);
    StoredSetting added;
    change([&] { added = insert_setting(database_, setting); });
    return added;
  }

  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override {
    refuse_invalid(setting);
    StoredSetting updated{number, 0, setting};
    change([&] {
      const StoredSetting old = require_setting(number, expected);
      updated.revision = old.revision + 1;
      rewrite_setting(database_, old, updated);
    });
    return updated;
  }

  void delete_setting(long number, std::optional<Revision> expected) override {
    change([&] { workbench::delete_setting(database_, require_setting(number, expected)); });
  }

  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override {
    change([&] { workbench::replace_settings(database_, settings); });
  }

  std::vector<StoredCalendar> load_calendars() override { return select_calendars(database_); }

  void replace_calendars(const std::vector<StoredCalendar>& calendars) override {
    change([&] { workbench::replace_calendars(database_, calendars); });
  }

  void import_records(const StoreImport& records, const schedule::Progress& progress) override {
    change([&] {
      import_rules(database_, records.rules, schedule::part_of(progress, 0, 50));
      if (records.settings)
        workbench::replace_settings(database_, *records.settings, schedule::part_of(progress, 50, 100));
    });
  }

  void replace_content(const StoreContent& content) override {
    change([&] { workbench::replace_content(database_, content); });
  }

  StoreCopy copy() override { return select_copy(database_); }

  void set_progress(const schedule::Progress& progress) override { database_.set_progress(progress); }

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
    begin_change(database_);
    body();
    transaction.commit();
    notify_subscribers();
  }

  StoredRule require_rule(long number, std::optional<Revision> expected) {
    return workbench::require_rule(try_load_rule(number), number, expected);
  }

  StoredSetting require_setting(long number, std::optional<Revision> expected) {
    return workbench::require_setting(select_setting(database_, number), number, expected);
  }

  /// SQLite's data_version; nullopt while the file is locked. Never waits.
  std::optional<std::int64_t> read_data_version() {
    const ScopedNoBusyWait no_wait(database_, busy_timeout_);
    try {
      return database_.integer("PRAGMA data_version");
    } catch (const StoreError& error) {
      if (error.kind() != StoreErrorKind::locked) throw;
      return std::nullopt;
    }
  }

  std::chrono::milliseconds busy_timeout_;
  SqliteDatabase database_;
  std::optional<std::int64_t> data_version_;
};

}  // namespace

std::unique_ptr<RuleStore> open_sqlite_store(const std::filesystem::path& path, const SqliteStoreOptions& options) {
  return std::make_unique<SqliteRuleStore>(path, options);
}

}  // namespace workbench
