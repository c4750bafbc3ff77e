#pragma once

#include <exception>
#include <memory>
#include <string>

#include "CommitUnderWay.h"
#include "RuleStore.h"
#include "ServerRuleStore.h"
#include "ServerSession.h"

namespace workbench {

/// A store on a server whose calls run on the thread that makes them, however long the server takes.
class DirectServerStore final : public RuleStore {
 public:
  /// Opens the store; see `open_server_store`. What the last commit came to is noted in `commit`. With `unsettled`, it
  /// is not known whether the change with this id happened, which is found out before the next change begins. If that
  /// change prepares the tables, nothing is opened before `settle`, and nothing may be called unless that returns true.
  DirectServerStore(const odbc::ConnectionString& options, const ServerStoreOptions& settings,
                    std::shared_ptr<CommitUnderWay> commit, ChangeId unsettled);

  /// Finds out whether the change happened of which it was not known; false when there is none.
  bool settle();

  std::vector<StoredRule> load_rules() override;
  std::optional<StoredRule> try_load_rule(long number) override;
  StoredRule add_rule(const Rule& rule) override;
  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override;
  void delete_rule(long number, std::optional<Revision> expected) override;
  std::vector<RuleChange> load_changes(long number) override;
  std::vector<StoredSetting> load_settings() override;
  StoredSetting add_setting(const SymbolSourceSetting& setting) override;
  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override;
  void delete_setting(long number, std::optional<Revision> expected) override;
  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override;
  std::vector<StoredCalendar> load_calendars() override;
  void replace_calendars(const std::vector<StoredCalendar>& calendars) override;
  void import_records(const StoreImport& records, const schedule::Progress& progress) override;
  void replace_content(const StoreContent& content) override;
  StoreCopy copy() override;
  bool poll_for_changes() override;

 private:
  /// Runs `body`, which changes the store and returns what became of the record, as one transaction.
  template <class Body>
  ChangedRecord change(const Body& body);
  /// Commits the change with this id and returns why its acknowledgement did not come, if it did not.
  std::exception_ptr try_commit(odbc::OdbcTransaction& transaction, const ChangeId& change,
                                const ChangedRecord& record = {});
  /// Throws `unacknowledged`, if it is set, unless the change happened, which a new connection finds out. If there is
  /// none, throws `uncertain`; the next change finds it out then before it begins.
  void require_happened(const ChangeId& change, const std::exception_ptr& unacknowledged);
  bool settle_change();
  StoredRule require_rule(long number, std::optional<Revision> expected);
  StoredSetting require_setting(long number, std::optional<Revision> expected);

  ServerSession session_;
  std::shared_ptr<CommitUnderWay> commit_;
  std::int64_t known_changes_ = 0;
  bool missed_change_ = false;
  ChangeId unsettled_;  // of a change of which it is not known whether it happened
};

}  // namespace workbench
