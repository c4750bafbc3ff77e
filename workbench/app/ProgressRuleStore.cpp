#include "ProgressRuleStore.h"

#include <utility>

namespace workbench {

namespace {

/// Shows the progress of a store's calls as long as it lives.
class ScopedStoreProgress {
 public:
  ScopedStoreProgress(RuleStore& store, const schedule::Progress& progress) : store_(store) {
    store_.set_progress(progress);
  }
  ~ScopedStoreProgress() { store_.set_progress({}); }
  ScopedStoreProgress(const ScopedStoreProgress&) = delete;
  ScopedStoreProgress& operator=(const ScopedStoreProgress&) = delete;

 private:
  RuleStore& store_;
};

}  // namespace

ProgressRuleStore::ProgressRuleStore(std::shared_ptr<RuleStore> store, CreateProgress create_progress)
    : store_(std::move(store)),
      create_progress_(std::move(create_progress)),
      changes_(store_->subscribe([this] { notify_subscribers(); })) {}

template <class Call>
auto ProgressRuleStore::with_progress(const Call& call) {
  const ScopedStoreProgress progress(*store_, create_progress_());
  return call();
}

std::vector<StoredRule> ProgressRuleStore::load_rules() {
  return with_progress([&] { return store_->load_rules(); });
}

std::optional<StoredRule> ProgressRuleStore::try_load_rule(long number) {
  return with_progress([&] { return store_->try_load_rule(number); });
}

StoredRule ProgressRuleStore::add_rule(const Rule& rule) {
  return with_progress([&] { return store_->add_rule(rule); });
}

StoredRule ProgressRuleStore::update_rule(long number, const Rule& rule, std::optional<Revision> expected) {
  return with_progress([&] { return store_->update_rule(number, rule, expected); });
}

void ProgressRuleStore::delete_rule(long number, std::optional<Revision> expected) {
  with_progress([&] { store_->delete_rule(number, expected); });
}

std::vector<RuleChange> ProgressRuleStore::load_changes(long number) {
  return with_progress([&] { return store_->load_changes(number); });
}

std::vector<StoredSetting> ProgressRuleStore::load_settings() {
  return with_progress([&] { return store_->load_settings(); });
}

StoredSetting ProgressRuleStore::add_setting(const SymbolSourceSetting& setting) {
  return with_progress([&] { return store_->add_setting(setting); });
}

StoredSetting ProgressRuleStore::update_setting(long number, const SymbolSourceSetting& setting,
                                                std::optional<Revision> expected) {
  return with_progress([&] { return store_->update_setting(number, setting, expected); });
}

void ProgressRuleStore::delete_setting(long number, std::optional<Revision> expected) {
  with_progress([&] { store_->delete_setting(number, expected); });
}

void ProgressRuleStore::replace_settings(const std::vector<SymbolSourceSetting>& settings) {
  with_progress([&] { store_->replace_settings(settings); });
}

std::vector<StoredCalendar> ProgressRuleStore::load_calendars() {
  return with_progress([&] { return store_->load_calendars(); });
}

void ProgressRuleStore::replace_calendars(const std::vector<StoredCalendar>& calendars) {
  with_progress([&] { store_->replace_calendars(calendars); });
}

void ProgressRuleStore::import_records(const StoreImport& records, const schedule::Progress& progress) {
  with_progress([&] { store_->import_records(records, progress); });
}

void ProgressRuleStore::replace_content(const StoreContent& content) {
  with_progress([&] { store_->replace_content(content); });
}

StoreCopy ProgressRuleStore::copy() {
  return with_progress([&] { return store_->copy(); });
}

bool ProgressRuleStore::poll_for_changes() { return store_->poll_for_changes(); }

}  // namespace workbench
