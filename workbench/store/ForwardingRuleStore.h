#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "RuleStore.h"

namespace workbench {

/// Passes every call on to another store, whose changes its subscribers hear of. A derived class says what happens
/// around a call.
class ForwardingRuleStore : public RuleStore {
 public:
  std::vector<StoredRule> load_rules() override { return forward(&RuleStore::load_rules); }
  std::optional<StoredRule> try_load_rule(long number) override { return forward(&RuleStore::try_load_rule, number); }
  StoredRule add_rule(const Rule& rule) override { return forward(&RuleStore::add_rule, rule); }
  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override {
    return forward(&RuleStore::update_rule, number, rule, expected);
  }
  void delete_rule(long number, std::optional<Revision> expected) override {
    forward(&RuleStore::delete_rule, number, expected);
  }
  std::vector<RuleChange> load_changes(long number) override { return forward(&RuleStore::load_changes, number); }
  std::vector<StoredSetting> load_settings() override { return forward(&RuleStore::load_settings); }
  StoredSetting add_setting(const SymbolSourceSetting& setting) override {
    return forward(&RuleStore::add_setting, setting);
  }
  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override {
    return forward(&RuleStore::update_setting, number, setting, expected);
  }
  void delete_setting(long number, std::optional<Revision> expected) override {
    forward(&RuleStore::delete_setting, number, expected);
  }
  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override {
    forward(&RuleStore::replace_settings, settings);
  }
  std::vector<StoredCalendar> load_calendars() override { return forward(&RuleStore::load_calendars); }
  void replace_calendars(const std::vector<StoredCalendar>& calendars) override {
    forward(&RuleStore::replace_calendars, calendars);
  }
  void import_records(const StoreImport& records, const schedule::Progress& progress) override {
    forward(&RuleStore::import_records, records, progress);
  }
  void replace_content(const StoreContent& content) override { forward(&RuleStore::replace_content, content); }
  StoreCopy copy() override { return forward(&RuleStore::copy); }
  bool poll_for_changes() override { return forward(&RuleStore::poll_for_changes); }

 protected:
  explicit ForwardingRuleStore(std::shared_ptr<RuleStore> store)
      : store_(std::move(store)), changes_(store_->subscribe([this] { notify_subscribers(); })) {}

  RuleStore& store() const noexcept { return *store_; }

 private:
  /// Runs `call`, which is one call of the other store. What it throws instead is what the caller gets.
  virtual void run(const std::function<void()>& call) = 0;

  template <class Result, class... Parameters>
  Result forward(Result (RuleStore::*method)(Parameters...), const std::type_identity_t<Parameters>&... arguments) {
    if constexpr (std::is_void_v<Result>) {
      run([&] { (store_.get()->*method)(arguments...); });
    } else {
      std::optional<Result> result;
      run([&] { result = (store_.get()->*method)(arguments...); });
      return *std::move(result);
    }
  }

  std::shared_ptr<RuleStore> store_;
  StoreSubscription changes_;
};

}  // namespace workbench
