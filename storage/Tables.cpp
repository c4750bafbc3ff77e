#include "Tables.h"

#include "ExpirationRule.h"

using base::create_instance;

IkvTablePtr open_rules_table(const StorageBlock& storage, long rule_id) {
  IkvTablePtr table = create_instance<IKV_kvudfcom::IkvTable>(__uuidof(kvTable));
  const IkvRuleFilterPtr filter = create_instance<IkvRuleFilter>(__uuidof(kvRuleFilter));
  filter->SetRuleID(rule_id);
  const IkvExpirationRuleServicePtr rules = storage.rules;
  rules->load_rules(filter, table);
  return table;
}

IkvTablePtr open_symbol_source_settings_table(StorageBlock& storage) {
  IkvTablePtr table = create_instance<IKV_kvudfcom::IkvTable>(__uuidof(kvTable));
  // The service takes no filter yet; hosts expect one to be created with every table that is opened.
  const IkvRuleFilterPtr filter = create_instance<IkvRuleFilter>(__uuidof(kvRuleFilter));
  if (!storage.symbol_sources) {
    const IkvStoragePtr main_interface = storage.storage;
    base::replace(storage.symbol_sources, base::try_query<IkvSymbolSourceService>(main_interface));
  }
  const IkvSymbolSourceServicePtr symbol_sources = storage.symbol_sources;
  symbol_sources->load_symbol_source_settings(nullptr, table);
  return table;
}

void create_rule_table(IkvTablePtr& target) {
  base::release(target);
  base::ComPtr<IUnknown> object;
  const HRESULT created = base::fetch_into(object, [](IUnknown** out) {
    return CoCreateInstance(__uuidof(kvTable), nullptr, CLSCTX_ALL, IID_IUnknown, reinterpret_cast<void**>(out));
  });
  if (SUCCEEDED(created) && object && SUCCEEDED(OleRun(object))) {
    base::fetch_into(target, [&](IKV_kvudfcom::IkvTable** out) {
      return object->QueryInterface(__uuidof(IKV_kvudfcom::IkvTable), reinterpret_cast<void**>(out));
    });
  }
  base::release(object);
  for (const tagKVFIELDID field : rule_fields) target->AddField(field, 0, 0, 0);
}
