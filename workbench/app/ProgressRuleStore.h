#pragma once

#include <functional>
#include <memory>

#include "RuleStore.h"

namespace workbench {

/// A store of which each call shows its progress, so that the user can cancel one that takes long because another
/// program holds the store or because it is large. It then throws `schedule::Cancelled`, and nothing has changed.
class ProgressRuleStore final : public RuleStore {
 public:
  /// Creates what shows the progress of one call. It belongs to the function and is destroyed with it.
  using CreateProgress = std::function<schedule::Progress()>;

  ProgressRuleStore(std::shared_ptr<RuleStore> store, CreateProgress create_progress);

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
  /// What `call` of the store returns.
  template <class Call>
  auto with_progress(const Call& call);

  std::shared_ptr<RuleStore> store_;
  CreateProgress create_progress_;
  StoreSubscription changes_;
};

}  // namespace workbench
