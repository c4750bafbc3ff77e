#include "StorageProxies.h"

#include <oleauto.h>

namespace test_support {
namespace {

using workbench::text_of;

}  // namespace

HRESULT FilterProxy::SetRuleID(long rule_id) noexcept {
  return forward("IkvRuleFilter::SetRuleID", &IkvRuleFilter::SetRuleID, rule_id);
}

HRESULT StorageProxy::load_symbol_source_settings(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept {
  return forward("IkvSymbolSourceService::load_symbol_source_settings",
                 &IkvSymbolSourceService::load_symbol_source_settings, filter, table);
}

HRESULT StorageProxy::load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept {
  return forward("IkvExpirationRuleService::load_rules", &IkvExpirationRuleService::load_rules, filter, table);
}

HRESULT StorageProxy::delete_rule(long rule_id, long* ok) noexcept {
  return fetch("IkvExpirationRuleService::delete_rule", &IkvExpirationRuleService::delete_rule, ok, rule_id);
}

HRESULT StorageProxy::add_rule(BSTR name, long roll_offset, long day_type, long day_mode, long day_of_month,
                               long day_month, long week_ordinal, long weekday, long weekday_month,
                               long move_to_next_trading_day, long* rule_id) noexcept {
  return workbench::com_method([&] {
    host()->saves.emplace_back(0L, text_of(name), roll_offset, day_type, day_mode, day_of_month, day_month,
                               week_ordinal, weekday, weekday_month, move_to_next_trading_day);
    return fetch("IkvExpirationRuleService::add_rule", &IkvExpirationRuleService::add_rule, rule_id, name, roll_offset,
                 day_type, day_mode, day_of_month, day_month, week_ordinal, weekday, weekday_month,
                 move_to_next_trading_day);
  });
}

HRESULT StorageProxy::update_rule(long rule_id, BSTR name, long roll_offset, long day_type, long day_mode,
                                  long day_of_month, long day_month, long week_ordinal, long weekday,
                                  long weekday_month, long move_to_next_trading_day) noexcept {
  return workbench::com_method([&] {
    host()->saves.emplace_back(rule_id, text_of(name), roll_offset, day_type, day_mode, day_of_month, day_month,
                               week_ordinal, weekday, weekday_month, move_to_next_trading_day);
    return forward("IkvExpirationRuleService::update_rule", &IkvExpirationRuleService::update_rule, rule_id, name,
                   roll_offset, day_type, day_mode, day_of_month, day_month, week_ordinal, weekday, weekday_month,
                   move_to_next_trading_day);
  });
}

}  // namespace test_support
