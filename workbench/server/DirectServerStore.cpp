#include "DirectServerStore.h"

#include <exception>
#include <set>
#include <utility>

#include "ExpectedRevision.h"
#include "ServerChanges.h"
#include "ServerCopy.h"
#include "ServerRecords.h"
#include "ServerSchema.h"

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

}  // namespace

DirectServerStore::DirectServerStore(const odbc::ConnectionString& options, const ServerStoreOptions& settings,
                                     std::shared_ptr<CommitUnderWay> commit, ChangeId unsettled)
    : session_(api_of(settings, odbc::describe(options, settings.dialect.driver)), options, settings.dialect),
      commit_(std::move(commit)),
      unsettled_(std::move(unsettled)) {
  if (unsettled_.prepares_tables) return;
  refuse_invalid_content(settings.first_content);
  const ChangeId id{new_change_id(), true};
  std::exception_ptr unacknowledged;
  session_.call([&] {
    known_changes_ = prepare_schema(session_, settings, id.text, [&](odbc::OdbcTransaction& transaction) {
      unacknowledged = try_commit(transaction, id);
    });
  });
  require_happened(id, unacknowledged);
}

std::vector<StoredRule> DirectServerStore::load_rules() {
  return session_.call([&] { return select_rules(session_); });
}

std::optional<StoredRule> DirectServerStore::try_load_rule(long number) {
  return session_.call([&] { return select_rule(session_, number); });
}

StoredRule DirectServerStore::add_rule(const Rule& rule) {
  refuse_invalid(rule);
  const ChangedRecord added = change([&] { return ChangedRecord{insert_rule(session_, rule), 1}; });
  return {added.number, added.revision, rule};
}

StoredRule DirectServerStore::update_rule(long number, const Rule& rule, std::optional<Revision> expected) {
  refuse_invalid(rule);
  const ChangedRecord updated = change([&] {
    const StoredRule old = require_rule(number, expected);
    if (!workbench::update_rule(session_, old, rule)) throw rule_changed(old.rule.name);
    return ChangedRecord{number, old.revision + 1};
  });
  return {number, updated.revision, rule};
}

void DirectServerStore::delete_rule(long number, std::optional<Revision> expected) {
  change([&] {
    const StoredRule old = require_rule(number, expected);
    if (!workbench::delete_rule(session_, old)) throw rule_changed(old.rule.name);
    return ChangedRecord{number, old.revision};
  });
}

std::vector<RuleChange> DirectServerStore::load_changes(long number) {
  return session_.call([&] { return select_changes(session_, number); });
}

std::vector<StoredSetting> DirectServerStore::load_settings() {
  return session_.call([&] { return select_settings(session_); });
}

StoredSetting DirectServerStore::add_setting(const SymbolSourceSetting& setting) {
  refuse_invalid(setting);
  const ChangedRecord added = change([&] { return ChangedRecord{insert_setting(session_, setting), 1}; });
  return {added.number, added.revision, setting};
}

StoredSetting DirectServerStore::update_setting(long number, const SymbolSourceSetting& setting,
                                                std::optional<Revision> expected) {
  refuse_invalid(setting);
  const ChangedRecord updated = change([&] {
    const StoredSetting old = require_setting(number, expected);
    if (!workbench::update_setting(session_, number, old.revision, setting)) throw setting_changed(old.setting.name);
    return ChangedRecord{number, old.revision + 1};
  });
  return {number, updated.revision, setting};
}

void DirectServerStore::delete_setting(long number, std::optional<Revision> expected) {
  change([&] {
    const StoredSetting old = require_setting(number, expected);
    if (!workbench::delete_setting(session_, number, old.revision)) throw setting_changed(old.setting.name);
    return ChangedRecord{number, old.revision};
  });
}

void DirectServerStore::replace_settings(const std::vector<SymbolSourceSetting>& settings) {
  refuse_invalid_records(settings);
  change([&] {
    workbench::replace_settings(session_, settings);
    return ChangedRecord();
  });
}

std::vector<StoredCalendar> DirectServerStore::load_calendars() {
  return session_.call([&] { return select_calendars(session_); });
}

void DirectServerStore::replace_calendars(const std::vector<StoredCalendar>& calendars) {
  refuse_invalid_records(calendars);
  change([&] {
    workbench::replace_calendars(session_, calendars);
    return ChangedRecord();
  });
}

void DirectServerStore::import_records(const StoreImport& records, const schedule::Progress& progress) {
  refuse_invalid_records(records.rules);
  if (records.settings) refuse_invalid_records(*records.settings);
  change([&] {
    import_rules(session_, records.rules, schedule::part_of(progress, 0, 50));
    if (records.settings)
      workbench::replace_settings(session_, *records.settings, schedule::part_of(progress, 50, 100));
    return ChangedRecord();
  });
}

void DirectServerStore::replace_content(const StoreContent& content) {
  refuse_invalid_content(content);
  change([&] {
    session_.execute(session_.sql().delete_content);
    insert_content(session_, content);
    return ChangedRecord();
  });
}

StoreCopy DirectServerStore::copy() {
  return session_.call([&] {
    const odbc::OdbcTransaction moment(session_.connection());
    session_.execute(session_.sql().begin_snapshot);
    return select_copy(session_);
  });
}

bool DirectServerStore::poll_for_changes() {
  const std::int64_t found = session_.call([&] { return read_counter(session_, session_.sql().read_counter); });
  if (found == known_changes_ && !missed_change_) return false;
  known_changes_ = found;
  missed_change_ = false;
  notify_subscribers();
  return true;
}

template <class Body>
ChangedRecord DirectServerStore::change(const Body& body) {
  const ChangeId id{new_change_id()};
  ChangedRecord changed;
  std::int64_t counter = 0;
  std::exception_ptr unacknowledged;
  session_.call([&] {
    if (settle_change()) missed_change_ = true;
    odbc::OdbcTransaction transaction(session_.connection());
    // The counter that this store remembers next includes this change, so a change of another workbench before it is
    // remembered in `missed_change_` for the next poll.
    if (read_counter(session_, session_.sql().lock_store) != known_changes_) missed_change_ = true;
    insert_change(session_, id.text);
    changed = body();
    counter = read_counter(session_, session_.sql().read_counter);
    unacknowledged = try_commit(transaction, id, changed);
  });
  require_happened(id, unacknowledged);
  known_changes_ = counter;
  notify_subscribers();
  return changed;
}

std::exception_ptr DirectServerStore::try_commit(odbc::OdbcTransaction& transaction, const ChangeId& change,
                                                 const ChangedRecord& record) {
  if (!commit_->begin(change, record)) session_.fail(StoreErrorKind::connection_lost, "the change was given up");
  try {
    transaction.commit();
    commit_->acknowledge();
    return nullptr;
  } catch (...) {
    return std::current_exception();
  }
}

void DirectServerStore::require_happened(const ChangeId& change, const std::exception_ptr& unacknowledged) {
  if (!unacknowledged) return;
  unsettled_ = change;
  session_.drop_connection();
  bool happened = false;
  try {
    happened = settle();
  } catch (const std::exception& error) {
    session_.fail(StoreErrorKind::uncertain, error.what());
  }
  if (!happened) session_.call([&] { std::rethrow_exception(unacknowledged); });
}

bool DirectServerStore::settle() {
  return session_.call([&] { return settle_change(); });
}

bool DirectServerStore::settle_change() {
  if (unsettled_.text.empty()) return false;
  const bool happened = unsettled_.prepares_tables ? settle_preparation(session_, unsettled_.text)
                                                   : workbench::settle_change(session_, unsettled_.text);
  unsettled_ = {};
  if (happened)
    commit_->acknowledge();
  else
    commit_->forget();
  return happened;
}

StoredRule DirectServerStore::require_rule(long number, std::optional<Revision> expected) {
  return workbench::require_rule(select_rule(session_, number), number, expected);
}

StoredSetting DirectServerStore::require_setting(long number, std::optional<Revision> expected) {
  return workbench::require_setting(select_setting(session_, number), number, expected);
}

}  // namespace workbench
