#pragma once

#include <string>
#include <vector>

#include "Report.h"
#include "StorageBlock.h"

/// The locations under which the failures of `collect_rule_users` are reported.
struct RuleUsersLocations {
  using FailedCall = SnagtrapUtil::FixedLocation<SnagtrapUtil::ReportKind::failed_call>;

  FailedCall rule_name;      ///< the name of the rule in use cannot be read
  FailedCall setting_field;  ///< the setting's own name cannot be looked up
  FailedCall setting_name;   ///< the setting's own name cannot be read
};

/// Appends the names of the symbol source settings that use the rule of this name, in the order of the table,
/// duplicates included. Settings refer to rules by name, code unit by code unit; a setting without the field uses none.
/// A failing read is reported at its location and thrown as a `_com_error`; what was found until then stays in `users`.
void collect_rule_users(const IkvTablePtr& settings, const _bstr_t& rule_name, const RuleUsersLocations& locations,
                        std::vector<std::wstring>& users);
