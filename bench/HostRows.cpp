#include "HostRows.h"

#include "ComPtr.h"

namespace bench {

namespace {

IkvTablePtr load(const StorageBlock& storage, long rule_id) {
  IkvTablePtr table = base::create_instance<IKV_kvudfcom::IkvTable>(__uuidof(kvTable));
  const auto filter = base::create_instance<IkvRuleFilter>(__uuidof(kvRuleFilter));
  filter->SetRuleID(rule_id);
  storage.rules->load_rules(filter, table);
  return table;
}

IkvFieldPtr field(const IkvTablePtr& table, long id) {
  IkvFieldPtr found;
  table->GetFieldByID(id, &found);
  return found;
}

long number(const IkvTablePtr& table, long id) {
  long value = 0;
  field(table, id)->GetLong(&value);
  return value;
}

_bstr_t text(const IkvTablePtr& table, long id) {
  BSTR value = nullptr;
  field(table, id)->GetText(&value);
  return {value, false};
}

}  // namespace

std::vector<HostRow> read_rows(const StorageBlock& storage) {
  std::vector<HostRow> rows;
  const IkvTablePtr table = load(storage, 0);
  long at_end = 1;
  for (table->MoveFirst(); table->IsEOF(&at_end), !at_end; table->MoveNext()) {
    const _bstr_t name = text(table, KVFIELD_RULE_NAME);
    rows.push_back({std::wstring(static_cast<const wchar_t*>(name), name.length()), number(table, KVFIELD_RULE_ID)});
  }
  return rows;
}

ExpirationRule read_rule(const StorageBlock& storage, long rule_id) {
  const IkvTablePtr table = load(storage, rule_id);
  ExpirationRule rule;
  rule.RuleName = text(table, KVFIELD_RULE_NAME);
  for (const RuleNumber& of_rule : rule_numbers) rule.*of_rule.member = number(table, of_rule.field);
  return rule;
}

}  // namespace bench
