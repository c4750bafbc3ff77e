#pragma once

#include "RuleStore.h"

namespace workbench {

/// Passes every call on to another store, except one, which fails before it reaches that store.
class FailingRuleStore final : public RuleStore {
 public:
  /// The call that comes `failing_call`-th, counted from 1, fails with an error of this kind; 0: none does.
  FailingRuleStore(std::shared_ptr<RuleStore> store, int failing_call,
                   StoreErrorKind kind = StoreErrorKind::unavailable);

  /// How many calls have come so far.
  int calls() const noexcept { return calls_; }

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
  void set_progress(const schedule::Progress& progress) override { store_->set_progress(progress); }
  bool poll_for_changes() override;

 private:
  RuleStore& next();

  std::shared_ptr<RuleStore> store_;
  StoreSubscription changes_;
  int failing_call_;
  StoreErrorKind kind_;
  int calls_ = 0;
};

}  // namespace workbench
