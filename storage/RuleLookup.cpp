#include "RuleLookup.h"

using SnagtrapUtil::require_success;

_bstr_t rule_name_of(const StorageBlock& storage, long rule_id,
                     const SnagtrapUtil::FixedLocation<SnagtrapUtil::ReportKind::failed_call>& row_count) {
  const IkvTablePtr rules = open_rules_table(storage, rule_id);
  _bstr_t name;
  long count = 0;
  require_success(rules->GetRowCount(&count), row_count);
  if (count != 1) return name;
  rules->MoveFirst();
  IkvFieldPtr field;
  if (find_field(rules, KVFIELD_RULE_NAME, field) == S_OK && field) FieldAccess<_bstr_t>::read(*field, name);
  return name;
}

bool is_rule_name_stored(const StorageBlock& storage, const _bstr_t& name, const NameSearchLocations& locations) {
  const IkvTablePtr rules = open_rules_table(storage, 0);
  bool found = false;
  const auto check = [&](HRESULT hr, RowMove move) { require_success(hr, locations.moves.of(move)); };
  walk_rows(rules, check, [&] {
    IkvFieldPtr field;
    require_success(find_field(rules, KVFIELD_RULE_NAME, field), locations.lookup);
    _bstr_t row_name;
    if (field) require_success(FieldAccess<_bstr_t>::read(*field, row_name), locations.read);
    found = platform::same_text(row_name, name);
    return !found;
  });
  return found;
}
