#include "ServerRuleStore.h"

#include <optional>
#include <set>

#include "ExpectedRevision.h"
#include "ServerCopy.h"
#include "ServerRecords.h"
#include "ServerSchema.h"
#include "ServerSession.h"

namespace workbench {

namespace {

template <class Records>
void refuse_invalid_records(const Records& records) {
  for (const auto& record : records) refuse_invalid(record);
}

void refuse_invalid_content(const StoreContent& content) {
  refuse_invalid_records(content.rules);
  refuse_invalid_records(content.settings);
  refuse_invalid_records(content.calendars);
  std::set<std::wstring> names;
  for (const Rule& rule : content.rules)
    if (!names.insert(rule.name).second) throw duplicate_rule_name(rule.name);
}

const odbc::OdbcApi& api_of(const ServerStoreOptions& settings, const std::wstring& store) try {
  return settings.api ? *settings.api : odbc::system_odbc();
} catch (const odbc::OdbcError& error) {
  throw StoreError(StoreErrorKind::unavailable, store, error.what());
}

class ServerRuleStore final : public RuleStore {
 public:
  ServerRuleStore(const odbc::ConnectionString& options, const ServerStoreOptions& settings)
      : session_(api_of(settings, odbc::describe(options, settings.dialect.driver)), options, settings.dialect) {
    refuse_invalid_content(settings.first_content);
    session_.call([&] {
      prepare_schema(session_, settings);
      known_changes_ = read_counter(session_.sql().read_changes);
    });
  }

  std::vector<StoredRule> load_rules() override {
    return session_.call([&] { return select_rules(session_); });
  }

  std::optional<StoredRule> try_load_rule(long number) override {
    return session_.call([&] { return select_rule(session_, number); });
  }

  StoredRule add_rule(const Rule& rule) override {
    refuse_invalid(rule);
    StoredRule added{0, 1, rule};
    change([&] { added.number = insert_rule(session_, rule); });
    return added;
  }

  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override {
    refuse_invalid(rule);
    StoredRule updated{number, 0, rule};
    change([&] {
      const StoredRule old = require_rule(number, expected);
      if (!workbench::update_rule(session_, old, rule)) throw rule_changed(old.rule.name);
      updated.revision = old.revision + 1;
    });
    return updated;
  }

  void delete_rule(long number, std::optional<Revision> expected) override {
    change([&] {
      const StoredRule old = require_rule(number, expected);
      if (!workbench::delete_rule(session_, old)) throw rule_changed(old.rule.name);
    });
  }

  std::vector<StoredSetting> load_settings() override {
    return session_.call([&] { return select_settings(session_); });
  }

  StoredSetting add_setting(const SymbolSourceSetting& setting) override {
    refuse_invalid(setting);
    StoredSetting added{0, 1, setting};
    change([&] { added.number = insert_setting(session_, setting); });
    return added;
  }

  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override {
    refuse_invalid(setting);
    StoredSetting updated{number, 0, setting};
    change([&] {
      const StoredSetting old = require_setting(number, expected);
      if (!workbench::update_setting(session_, number, old.revision, setting)) throw setting_changed(old.setting.name);
      updated.revision = old.revision + 1;
    });
    return updated;
  }

  void delete_setting(long number, std::optional<Revision> expected) override {
    change([&] {
      const StoredSetting old = require_setting(number, expected);
      if (!workbench::delete_setting(session_, number, old.revision)) throw setting_changed(old.setting.name);
    });
  }

  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override {
    refuse_invalid_records(settings);
    change([&] { workbench::replace_settings(session_, settings); });
  }

  std::vector<StoredCalendar> load_calendars() override {
    return session_.call([&] { return select_calendars(session_); });
  }

  void replace_calendars(const std::vector<StoredCalendar>& calendars) override {
    refuse_invalid_records(calendars);
    change([&] { workbench::replace_calendars(session_, calendars); });
  }

  void import_records(const StoreImport& records, const schedule::Progress& progress) override {
    refuse_invalid_records(records.rules);
    if (records.settings) refuse_invalid_records(*records.settings);
    change([&] {
      import_rules(session_, records.rules, schedule::part_of(progress, 0, 50));
      if (records.settings)
        workbench::replace_settings(session_, *records.settings, schedule::part_of(progress, 50, 100));
    });
  }

  void replace_content(const StoreContent& content) override {
    refuse_invalid_content(content);
    change([&] {
      session_.execute(session_.sql().delete_content);
      insert_content(session_, content);
    });
  }

  StoreCopy copy() override {
    return session_.call([&] {
      const odbc::OdbcTransaction moment(session_.connection());
      session_.execute(session_.sql().begin_snapshot);
      return select_copy(session_);
    });
  }

  bool poll_for_changes() override {
    const std::int64_t found = session_.call([&] { return read_counter(session_.sql().read_changes); });
    if (found == known_changes_ && !missed_change_) return false;
    known_changes_ = found;
    missed_change_ = false;
    notify_subscribers();
    return true;
  }

 private:
  template <class Body>
  void change(const Body& body) {
    session_.call([&] {
      odbc::OdbcTransaction transaction(session_.connection());
      // What others changed since the last look is told by the next look, because the counter then holds this change
      // too.
      if (read_counter(session_.sql().lock_store) != known_changes_) missed_change_ = true;
      body();
      const std::int64_t changes = read_counter(session_.sql().read_changes);
      transaction.commit();
      known_changes_ = changes;
    });
    notify_subscribers();
  }

  std::int64_t read_counter(const std::wstring& sql) {
    odbc::OdbcStatement row = session_.prepare(sql);
    row.execute();
    if (!row.fetch()) session_.fail(StoreErrorKind::damaged, "the store has no version");
    return row.integer(0);
  }

  StoredRule require_rule(long number, std::optional<Revision> expected) {
    return workbench::require_rule(select_rule(session_, number), number, expected);
  }

  StoredSetting require_setting(long number, std::optional<Revision> expected) {
    return workbench::require_setting(select_setting(session_, number), number, expected);
  }

  ServerSession session_;
  std::int64_t known_changes_ = 0;
  bool missed_change_ = false;
};

}  // namespace

std::unique_ptr<RuleStore> open_server_store(const odbc::ConnectionString& options,
                                             const ServerStoreOptions& settings) {
  return std::make_unique<ServerRuleStore>(options, settings);
}

std::wstring describe_server_store(const odbc::ConnectionString& options) {
  return odbc::describe(options, postgres().driver);
}

}  // namespace workbench
