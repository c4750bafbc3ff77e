#pragma once

#include "FakeObject.h"
#include "HostStorage.h"

namespace test_support {

class FakeFilter final : public FakeObject<IkvRuleFilter> {
 public:
  explicit FakeFilter(std::shared_ptr<HostState> host) : FakeObject(std::move(host), "kvRuleFilter") {}

  bool selects(const HostRule& rule) const noexcept { return rule_id_ == 0 || rule_id_ == rule.id; }

  HRESULT STDMETHODCALLTYPE SetRuleID(long rule_id) noexcept override;
  KV_UNUSED_SLOT(7)

 private:
  long rule_id_ = 0;
};

/// The storage object with its four interfaces. Works on the rules and settings of its host.
class FakeStorage final
    : public FakeObject<IkvStorage, IkvStorageSession, IkvSymbolSourceService, IkvExpirationRuleService> {
 public:
  explicit FakeStorage(std::shared_ptr<HostState> host) : FakeObject(std::move(host), "kvStorage") {}

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
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)

 private:
  /// The stored rule with this number, or the end.
  std::vector<HostRule>::iterator find(long rule_id) noexcept;
};

}  // namespace test_support
