#pragma once

#include <memory>
#include <unordered_map>

#include "HostClasses.h"
#include "HostStorage.h"
#include "TableRows.h"
#include "UnusedSlots.h"

namespace workbench {

/// The host's storage object over a store. A rule that a client loaded by its number and then rewrites must still be
/// what it loaded: after a change by another program in between, `update_rule` fails instead of overwriting that
/// change.
class StorageObject final
    : public RuleServiceSlots<
          DispatchObject<IkvStorage, IkvStorageSession, IkvSymbolSourceService, IkvExpirationRuleService>> {
 public:
  StorageObject(std::shared_ptr<RuleStore> store, StoreListeners listeners)
      : store_(std::move(store)), listeners_(std::move(listeners)) {}

  /// The filter is not looked at. The table is one of the host's own, without rows; else E_INVALIDARG.
  HRESULT STDMETHODCALLTYPE load_symbol_source_settings(IkvRuleFilter* filter,
                                                        IKV_kvudfcom::IkvTable* table) noexcept override;

  /// A null filter selects every rule. The table is as above.
  HRESULT STDMETHODCALLTYPE load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept override;
  HRESULT STDMETHODCALLTYPE delete_rule(long ruleId, long* ok) noexcept override;
  HRESULT STDMETHODCALLTYPE add_rule(BSTR ruleName, long rollOffset, long dayType, long dayMode, long dayOfMonth,
                                     long dayMonth, long weekOrdinal, long weekday, long weekdayMonth,
                                     long moveToNextTradingDay, long* ruleId) noexcept override;
  HRESULT STDMETHODCALLTYPE update_rule(long ruleId, BSTR ruleName, long rollOffset, long dayType, long dayMode,
                                        long dayOfMonth, long dayMonth, long weekOrdinal, long weekday,
                                        long weekdayMonth, long moveToNextTradingDay) noexcept override;

 private:
  /// `unsaved` is read when the body has failed: what it meant to store, if it meant that.
  template <class Body>
  HRESULT store_method(const std::optional<Rule>& unsaved, Body&& body) noexcept;
  std::vector<StoredRule> select_rules(long number);
  void note_restored(const StoredRule& added) noexcept;
  std::optional<Revision> loaded_revision(long number) const;

  std::shared_ptr<RuleStore> store_;
  StoreListeners listeners_;
  std::unordered_map<long, Revision> loaded_revisions_;  // of the rules that were loaded by their number
  std::weak_ptr<TableRows> lost_rule_;  // what was filled last for a number that the store does not have
};

}  // namespace workbench
