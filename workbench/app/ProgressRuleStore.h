#pragma once

#include <windows.h>

#include "RuleStore.h"

namespace workbench {

/// The store as the window's own commands use it: a call that takes longer than a second, because another program holds
/// the store or because it is large, shows its progress, and the user can cancel it, with nothing changed. Nothing else
/// of this thread happens meanwhile.
class ProgressRuleStore final : public RuleStore {
 public:
  /// `owner` returns the window over which the progress is shown.
  ProgressRuleStore(std::shared_ptr<RuleStore> store, std::function<HWND()> owner);

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
  std::function<HWND()> owner_;
  StoreSubscription changes_;
};

}  // namespace workbench
