#pragma once

#include "HostStorage.h"
#include "ProxyObject.h"

namespace test_support {

class FilterProxy final : public workbench::RuleFilterSlots<ProxyObject<IkvRuleFilter>> {
 public:
  FilterProxy(std::shared_ptr<HostState> host, const base::ComPtr<IUnknown>& filter)
      : RuleFilterSlots(std::move(host), "kvRuleFilter", filter) {}

  HRESULT STDMETHODCALLTYPE SetRuleID(long rule_id) noexcept override;
};

/// The storage object with its four interfaces.
class StorageProxy final
    : public workbench::RuleServiceSlots<
          ProxyObject<IkvStorage, IkvStorageSession, IkvSymbolSourceService, IkvExpirationRuleService>> {
 public:
  StorageProxy(std::shared_ptr<HostState> host, const base::ComPtr<IUnknown>& storage)
      : RuleServiceSlots(std::move(host), "kvStorage", storage) {}

  HRESULT STDMETHODCALLTYPE load_symbol_source_settings(IkvRuleFilter* filter,
                                                        IKV_kvudfcom::IkvTable* table) noexcept override;
  HRESULT STDMETHODCALLTYPE load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept override;
  HRESULT STDMETHODCALLTYPE delete_rule(long rule_id, long* ok) noexcept override;
  HRESULT STDMETHODCALLTYPE add_rule(BSTR name, long roll_offset, long day_type, long day_mode, long day_of_month,
                                     long day_month, long week_ordinal, long weekday, long weekday_month,
                                     long move_to_next_trading_day, long* rule_id) noexcept override;
  HRESULT STDMETHODCALLTYPE update_rule(long rule_id, BSTR name, long roll_offset, long day_type, long day_mode,
                                        long day_of_month, long day_month, long week_ordinal, long weekday,
                                        long weekday_month, long move_to_next_trading_day) noexcept override;
};

}  // namespace test_support
