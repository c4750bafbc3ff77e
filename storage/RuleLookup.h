#pragma once

#include "Report.h"
#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

/// Calls `rule(name, rule_id)` for each stored rule, in the order of the storage. A field that cannot be read is
/// reported and counts as empty or 0. Throws as `open_rules_table` does.
template <class Rule>
void for_each_rule(const StorageBlock& storage, const Rule& rule) {
  const IkvTablePtr rules = open_rules_table(storage, 0);
  for_each_row(rules, [&] {
    const auto name = GetField<_bstr_t>(rules, KVFIELD_RULE_NAME);
    rule(name, GetField<long>(rules, KVFIELD_RULE_ID));
  });
}

/// The name of the rule with this number; empty when there is not exactly one such rule or its name cannot be read.
/// A failure to count the rows is reported at `row_count` and thrown as a `_com_error`; throws as `open_rules_table`.
_bstr_t rule_name_of(const StorageBlock& storage, long rule_id,
                     const SnagtrapUtil::FixedLocation<SnagtrapUtil::ReportKind::failed_call>& row_count);

/// The locations under which the failures of `is_rule_name_stored` are reported.
struct NameSearchLocations {
  RowMoveLocations moves;
  SnagtrapUtil::SourceLocation lookup;  ///< the name of a row cannot be looked up
  SnagtrapUtil::SourceLocation read;    ///< the name of a row cannot be read
};

/// Whether a stored rule has this name, code unit by code unit; the search ends at the first one. Any call that fails
/// is reported at its location and thrown as a `_com_error`.
bool is_rule_name_stored(const StorageBlock& storage, const _bstr_t& name, const NameSearchLocations& locations);
