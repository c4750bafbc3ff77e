#include "ServerRuleStore.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "ScopedFlag.h"
#include "StoreThread.h"

namespace workbench {

namespace {

/// Waits and reports how much of the time limit has passed.
class ProgressWait final : public ServerWait {
 public:
  explicit ProgressWait(const schedule::Progress& progress) : progress_(progress) {}

  bool wait(HANDLE event, std::chrono::milliseconds at_most) override {
    const auto all = static_cast<DWORD>(at_most.count());
    for (DWORD passed = 0; passed < all; passed += period_ms) {
      if (WaitForSingleObject(event, std::min(period_ms, all - passed)) != WAIT_TIMEOUT) return true;
      if (!go_on(passed, all)) return false;
    }
    return true;
  }

  /// What the progress has thrown, if it has.
  const std::exception_ptr& failure() const noexcept { return failure_; }

 private:
  static constexpr DWORD period_ms = 100;

  bool go_on(DWORD passed, DWORD all) noexcept {
    try {
      return !progress_ || progress_(passed, all);
    } catch (...) {
      failure_ = std::current_exception();
      return false;
    }
  }

  const schedule::Progress& progress_;
  std::exception_ptr failure_;
};

/// A store whose calls wait for a thread of its own.
class ServerRuleStore final : public RuleStore {
 public:
  ServerRuleStore(odbc::ConnectionString options, const ServerStoreOptions& settings)
      : options_(std::move(options)),
        description_(odbc::describe(options_, settings.dialect.driver)),
        settings_(settings),
        progress_(std::exchange(settings_.progress, {})),
        thread_(std::make_unique<StoreThread>(options_, settings_)) {
    change([](DirectServerStore&) {});
    set_progress_of_calls({});
    // Another thread finds the store that this one has created.
    settings_.may_create = false;
    settings_.first_content = {};
    settings_.copied = nullptr;
  }

  std::vector<StoredRule> load_rules() override {
    return read([](DirectServerStore& store) { return store.load_rules(); });
  }

  std::optional<StoredRule> try_load_rule(long number) override {
    return read([number](DirectServerStore& store) { return store.try_load_rule(number); });
  }

  StoredRule add_rule(const Rule& rule) override {
    const ChangedRecord added = change([rule](DirectServerStore& store) { return record_of(store.add_rule(rule)); });
    return {added.number, added.revision, rule};
  }

  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override {
    const ChangedRecord updated =
        change([=](DirectServerStore& store) { return record_of(store.update_rule(number, rule, expected)); });
    return {updated.number, updated.revision, rule};
  }

  void delete_rule(long number, std::optional<Revision> expected) override {
    change([=](DirectServerStore& store) { store.delete_rule(number, expected); });
  }

  std::vector<RuleChange> load_changes(long number) override {
    return read([number](DirectServerStore& store) { return store.load_changes(number); });
  }

  std::vector<StoredSetting> load_settings() override {
    return read([](DirectServerStore& store) { return store.load_settings(); });
  }

  StoredSetting add_setting(const SymbolSourceSetting& setting) override {
    const ChangedRecord added =
        change([setting](DirectServerStore& store) { return record_of(store.add_setting(setting)); });
    return {added.number, added.revision, setting};
  }

  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override {
    const ChangedRecord updated =
        change([=](DirectServerStore& store) { return record_of(store.update_setting(number, setting, expected)); });
    return {updated.number, updated.revision, setting};
  }

  void delete_setting(long number, std::optional<Revision> expected) override {
    change([=](DirectServerStore& store) { store.delete_setting(number, expected); });
  }

  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override {
    change([settings](DirectServerStore& store) { store.replace_settings(settings); });
  }

  std::vector<StoredCalendar> load_calendars() override {
    return read([](DirectServerStore& store) { return store.load_calendars(); });
  }

  void replace_calendars(const std::vector<StoredCalendar>& calendars) override {
    change([calendars](DirectServerStore& store) { store.replace_calendars(calendars); });
  }

  void import_records(const StoreImport& records, const schedule::Progress& progress) override {
    change([records](DirectServerStore& store,
                     const schedule::Progress& reports) { store.import_records(records, reports); },
           progress);
  }

  void replace_content(const StoreContent& content) override {
    change([content](DirectServerStore& store) { store.replace_content(content); });
  }

  StoreCopy copy() override {
    return read([](DirectServerStore& store) { return store.copy(); });
  }

  void set_progress(const schedule::Progress& progress) override { set_progress_of_calls(progress); }

  bool poll_for_changes() override {
    if (!take_news()) return false;
    notify_subscribers();
    return true;
  }

 private:
  void set_progress_of_calls(const schedule::Progress& progress) { progress_ = progress; }

  static ChangedRecord record_of(const StoredRule& stored) { return {stored.number, stored.revision}; }
  static ChangedRecord record_of(const StoredSetting& stored) { return {stored.number, stored.revision}; }

  [[noreturn]] void fail(StoreErrorKind kind, const std::string& detail) const {
    throw StoreError(kind, description_, detail);
  }

  /// Whether others have changed the store since the last look.
  bool take_news() {
    std::optional<bool> news = false;
    if (settings_.poll_interval.count() == 0) {
      news = read([](DirectServerStore& store) { return store.poll_for_changes(); });
    } else if (busy_) {
      return false;
    } else {
      if (!thread_) start_thread();
      news = thread_->take_news();
    }
    if (!news) {
      abandon_thread();
      fail(StoreErrorKind::connection_lost, "the server did not answer in time");
    }
    // What happened between two threads is known to neither.
    return std::exchange(is_new_thread_, false) || *news;
  }

  template <class Call>
  std::invoke_result_t<Call, DirectServerStore&> read(Call call) {
    const auto result = std::make_shared<std::optional<std::invoke_result_t<Call, DirectServerStore&>>>();
    const StoreThread::End end = run([call, result](DirectServerStore& store) { *result = call(store); });
    if (end != StoreThread::End::done) {
      abandon_thread();
      fail_unended(end);
    }
    return *std::move(*result);
  }

  /// Runs a change and returns the record after it, if it is about one.
  template <class Call>
  ChangedRecord change(Call call, const schedule::Progress& progress = {}) {
    const auto changed = std::make_shared<ChangedRecord>();
    if (!thread_) start_thread();
    const std::optional<Commit> earlier = thread_->last_commit();
    const schedule::Progress reports = progress ? thread_->report_progress() : schedule::Progress();
    const StoreThread::End end = run(
        [=](DirectServerStore& store) {
          if constexpr (std::is_invocable_v<Call, DirectServerStore&, const schedule::Progress&>)
            call(store, reports);
          else if constexpr (std::is_void_v<std::invoke_result_t<Call, DirectServerStore&>>)
            call(store);
          else
            *changed = call(store);
        },
        progress);
    const ChangedRecord record = end == StoreThread::End::done ? *changed : settle(end, earlier);
    unsettled_ = {};
    notify_subscribers();
    return record;
  }

  /// Gives up a change that did not end; `earlier` is the last commit before it. Returns what the change made of its
  /// record if it happened nevertheless.
  ChangedRecord settle(StoreThread::End end, const std::optional<Commit>& earlier) {
    const std::optional<Commit> commit = abandon_thread();
    const bool may_have_happened = commit && (!earlier || earlier->change != commit->change);
    if (!may_have_happened) fail_unended(end);
    if (commit->happened) return commit->record;
    if (end == StoreThread::End::cancelled) fail(StoreErrorKind::uncertain, "the user gave up");
    bool happened = false;
    try {
      happened = read([](DirectServerStore& store) { return store.settle(); });
    } catch (const std::exception& error) {
      fail(StoreErrorKind::uncertain, error.what());
    } catch (const schedule::Cancelled&) {
      fail(StoreErrorKind::uncertain, "the user gave up");
    }
    if (!happened) fail(StoreErrorKind::connection_lost, "the change did not happen");
    return commit->record;
  }

  /// Of a call that did not end and changed nothing.
  [[noreturn]] void fail_unended(StoreThread::End end) {
    if (const std::exception_ptr thrown = std::exchange(thrown_by_progress_, nullptr)) std::rethrow_exception(thrown);
    if (end == StoreThread::End::cancelled) throw schedule::Cancelled();
    fail(StoreErrorKind::connection_lost, "the server did not answer in time");
  }

  StoreThread::End run(StoreThread::Task task, const schedule::Progress& progress = {}) {
    if (busy_) fail(StoreErrorKind::locked, "another call of this store is under way");
    if (!thread_) start_thread();
    const base::ScopedFlag busy(busy_);
    if (settings_.create_wait) return thread_->run(std::move(task), *settings_.create_wait(), progress);
    ProgressWait wait(progress_);
    const StoreThread::End end = thread_->run(std::move(task), wait, progress);
    thrown_by_progress_ = wait.failure();
    return end;
  }

  void start_thread() {
    thread_ = std::make_unique<StoreThread>(options_, settings_, unsettled_);
    is_new_thread_ = true;
  }

  std::optional<Commit> abandon_thread() {
    std::optional<Commit> commit = thread_->abandon();
    thread_.reset();
    if (commit && !commit->happened) unsettled_ = commit->change;
    return commit;
  }

  odbc::ConnectionString options_;
  std::wstring description_;
  ServerStoreOptions settings_;
  schedule::Progress progress_;
  std::exception_ptr thrown_by_progress_;
  std::unique_ptr<StoreThread> thread_;  // null after it was abandoned
  ChangeId unsettled_;                   // of a change of which it may not be known whether it happened
  bool is_new_thread_ = false;
  bool busy_ = false;
};

}  // namespace

bool ServerWait::wait(HANDLE event, std::chrono::milliseconds at_most) {
  WaitForSingleObject(event, static_cast<DWORD>(at_most.count()));
  return true;
}

std::unique_ptr<RuleStore> open_server_store(const odbc::ConnectionString& options,
                                             const ServerStoreOptions& settings) {
  return std::make_unique<ServerRuleStore>(options, settings);
}

std::wstring describe_server_store(const odbc::ConnectionString& options) {
  return odbc::describe(options, postgres().driver);
}

}  // namespace workbench
