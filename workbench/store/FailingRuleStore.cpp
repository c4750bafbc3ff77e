#include "FailingRuleStore.h"

namespace workbench {

FailingRuleStore::FailingRuleStore(std::shared_ptr<RuleStore> store, int failing_call, StoreErrorKind kind)
    : store_(std::move(store)),
      changes_(store_->subscribe([this] { notify_subscribers(); })),
      failing_call_(failing_call),
      kind_(kind) {}

RuleStore& FailingRuleStore::next() {
  if (++calls_ == failing_call_)
    throw StoreError(kind_, std::to_wstring(calls_), "call " + std::to_string(calls_) + " fails on purpose");
  return *store_;
}

std::vector<StoredRule> FailingRuleStore::load_rules() { return next().load_rules(); }

std::optional<StoredRule> FailingRuleStore::try_load_rule(long number) { return next().try_load_rule(number); }

StoredRule FailingRuleStore::add_rule(const Rule& rule) { return next().add_rule(rule); }

StoredRule FailingRuleStore::update_rule(long number, const Rule& rule, std::optional<Revision> expected) {
  return next().update_rule(number, rule, expected);
}

void FailingRuleStore::delete_rule(long number, std::optional<Revision> expected) {
  next().delete_rule(number, expected);
}

std::vector<RuleChange> FailingRuleStore::load_changes(long number) { return next().load_changes(number); }

std::vector<StoredSetting> FailingRuleStore::load_settings() { return next().load_settings(); }

StoredSetting FailingRuleStore::add_setting(const SymbolSourceSetting& setting) { return next().add_setting(setting); }

StoredSetting FailingRuleStore::update_setting(long number, const SymbolSourceSetting& setting,
                                               std::optional<Revision> expected) {
  return next().update_setting(number, setting, expected);
}

void FailingRuleStore::delete_setting(long number, std::optional<Revision> expected) {
  next().delete_setting(number, expected);
}

void FailingRuleStore::replace_settings(const std::vector<SymbolSourceSetting>& settings) {
  next().replace_settings(settings);
}

std::vector<StoredCalendar> FailingRuleStore::load_calendars() { return next().load_calendars(); }

void FailingRuleStore::replace_calendars(const std::vector<StoredCalendar>& calendars) {
  next().replace_calendars(calendars);
}

void FailingRuleStore::import_records(const StoreImport& records, const schedule::Progress& progress) {
  next().import_records(records, progress);
}

void FailingRuleStore::replace_content(const StoreContent& content) { next().replace_content(content); }

StoreCopy FailingRuleStore::copy() { return next().copy(); }

bool FailingRuleStore::poll_for_changes() { return next().poll_for_changes(); }

}  // namespace workbench
