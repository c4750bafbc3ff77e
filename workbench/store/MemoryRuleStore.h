#pragma once

#include <list>

#include "RuleStore.h"

namespace workbench {

/// A store that lasts as long as the object. It records the changes of rules only, and its copies hold none of them.
class MemoryRuleStore : public RuleStore {
 public:
  std::vector<StoredRule> load_rules() override { return rules_; }
  std::optional<StoredRule> try_load_rule(long number) override;
  StoredRule add_rule(const Rule& rule) override;
  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override;
  void delete_rule(long number, std::optional<Revision> expected) override;
  std::vector<RuleChange> load_changes(long number) override;
  std::vector<StoredSetting> load_settings() override { return settings_; }
  StoredSetting add_setting(const SymbolSourceSetting& setting) override;
  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override;
  void delete_setting(long number, std::optional<Revision> expected) override;
  void replace_settings(const std::vector<SymbolSourceSetting>& settings) override;
  std::vector<StoredCalendar> load_calendars() override { return calendars_; }
  void replace_calendars(const std::vector<StoredCalendar>& calendars) override;
  void import_records(const StoreImport& records, const schedule::Progress& progress) override;
  void replace_content(const StoreContent& content) override;
  StoreCopy copy() override { return {rules_, settings_, calendars_, last_number_, last_setting_number_, {}}; }
  bool poll_for_changes() override { return false; }

  /// Forgets who changed which rule, which otherwise takes more memory with every change.
  void forget_changes() noexcept { changes_.clear(); }

 protected:
  // A derived store may put content here that no client could store.
  std::vector<StoredRule> rules_;  // by ascending number
  std::vector<StoredSetting> settings_;
  long last_number_ = 0;
  long last_setting_number_ = 0;

 private:
  std::vector<StoredRule>::iterator find_unchanged(long number, std::optional<Revision> expected);
  std::vector<StoredSetting>::iterator find_unchanged_setting(long number, std::optional<Revision> expected);
  void refuse_duplicate(const Rule& rule, long number) const;

  struct RecordedChange {
    long number = 0;
    RuleChange change;
  };
  using RecordedChanges = std::list<RecordedChange>;

  static RecordedChanges changes_between(const std::vector<StoredRule>& old_rules,
                                         const std::vector<StoredRule>& new_rules);
  void keep(RecordedChanges&& changes) noexcept { changes_.splice(changes_.end(), changes); }

  std::vector<StoredCalendar> calendars_;  // by name
  RecordedChanges changes_;                // a list takes what has happened without needing memory
};

}  // namespace workbench
