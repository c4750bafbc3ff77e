#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Progress.h"
#include "RuleChange.h"
#include "RuleRecord.h"
#include "StoreError.h"

namespace workbench {

/// Keeps a subscription alive; dropping it ends the subscription.
using StoreSubscription = std::shared_ptr<const void>;

/// Keeps expiration rules, symbol source settings and trading calendars, and who changed them when. Every change is one
/// transaction: it happens wholly, is recorded and lasts, or it throws `StoreError` and nothing has changed. A store
/// belongs to one thread.
class RuleStore {
 public:
  RuleStore() = default;
  RuleStore(const RuleStore&) = delete;
  RuleStore& operator=(const RuleStore&) = delete;
  virtual ~RuleStore() = default;

  /// Every rule, by ascending number.
  virtual std::vector<StoredRule> load_rules() = 0;

  /// The rule with this number, if there is one.
  virtual std::optional<StoredRule> try_load_rule(long number) = 0;

  /// Stores a new rule and returns it with its number. Fails with `duplicate_name` or `invalid_value`.
  virtual StoredRule add_rule(const Rule& rule) = 0;

  /// Rewrites a rule and returns what is stored now. Settings that use the rule follow a change of its name. With
  /// `expected`, a rule that has another revision is left alone and the call fails with `changed`. Fails as well with
  /// `not_found`, `duplicate_name` or `invalid_value`.
  virtual StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected = std::nullopt) = 0;

  /// Deletes a rule; with `expected` only that revision of it, as above. Fails with `not_found`, `changed`, or with
  /// `in_use` while a setting names it.
  virtual void delete_rule(long number, std::optional<Revision> expected = std::nullopt) = 0;

  /// What changes did to the rule with this number, the oldest first, since the store records changes. A rule that was
  /// deleted still has its changes.
  virtual std::vector<RuleChange> load_changes(long number) = 0;

  /// Every symbol source setting, by ascending number, which is the order in which they were given.
  virtual std::vector<StoredSetting> load_settings() = 0;

  /// Stores a new setting and returns it with its number. Fails with `invalid_value`.
  virtual StoredSetting add_setting(const SymbolSourceSetting& setting) = 0;

  /// Rewrites a setting and returns what is stored now. With `expected`, a setting that has another revision is left
  /// alone and the call fails with `setting_changed`; a new name of its rule is such a change too. Fails as well with
  /// `setting_not_found` or `invalid_value`.
  virtual StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                                       std::optional<Revision> expected = std::nullopt) = 0;

  /// Deletes a setting; with `expected` only that revision of it, as above.
  virtual void delete_setting(long number, std::optional<Revision> expected = std::nullopt) = 0;

  /// Replaces all settings with these, which get new numbers.
  virtual void replace_settings(const std::vector<SymbolSourceSetting>& settings) = 0;

  /// Every trading calendar, by name.
  virtual std::vector<StoredCalendar> load_calendars() = 0;

  /// Replaces the calendar of the same name with each of these, or adds it. The others stay. Fails with
  /// `invalid_value`.
  virtual void replace_calendars(const std::vector<StoredCalendar>& calendars) = 0;

  /// Stores these rules under their names and these settings; other rules stay. Throws `schedule::Cancelled`, with
  /// nothing changed, when `progress` does. Fails with `invalid_value`.
  virtual void import_records(const StoreImport& records, const schedule::Progress& progress = {}) = 0;

  /// Replaces everything in the store with this content.
  virtual void replace_content(const StoreContent& content) = 0;

  /// Everything that the store holds at one moment.
  virtual StoreCopy copy() = 0;

  /// From now on `progress` is called again and again while a call takes long, and cancels it: the call then throws
  /// `schedule::Cancelled`, and nothing has changed. It must not use the store; an empty one ends that. A store in
  /// memory ignores it. One on a server calls it while it waits for the server, unless it was opened with a
  /// `ServerWait` of its own, and of a change whose commit is under way when it is cancelled it throws `uncertain`.
  virtual void set_progress(const schedule::Progress& /*progress*/) {}

  /// Checks whether another program changed the content since the last check, and if so notifies the subscribers.
  /// Returns whether it did.
  virtual bool poll_for_changes() = 0;

  /// Calls `changed` after each change, until the subscription is dropped. It may use the store; what it throws is
  /// dropped, because the change has happened.
  [[nodiscard]] StoreSubscription subscribe(std::function<void()> changed);

 protected:
  void notify_subscribers() noexcept;

 private:
  std::vector<std::weak_ptr<const std::function<void()>>> subscribers_;
};

}  // namespace workbench
