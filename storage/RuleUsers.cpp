#include "RuleUsers.h"

#include "ComStrings.h"
#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

namespace {

_bstr_t read_text(IKV_kvudfcom::IkvField& field, const RuleUsersLocations::FailedCall& location) {
  _bstr_t text;
  SnagtrapUtil::require_success(FieldAccess<_bstr_t>::read(field, text), location);
  return text;
}

}  // namespace

void collect_rule_users(const IkvTablePtr& settings, const _bstr_t& rule_name, const RuleUsersLocations& locations,
                        std::vector<std::wstring>& users) {
  // The host sees a row's field released only after the walk has moved on from the row.
  IkvFieldPtr rule;
  for_each_row(settings, [&] {
    if (find_field(settings, KVFIELD_RULE_NAME, rule) != S_OK || !rule) return;
    if (!platform::same_text(read_text(*rule, locations.rule_name), rule_name)) return;
    IkvFieldPtr setting;
    SnagtrapUtil::require_success(find_field(settings, KVFIELD_SETTING_NAME, setting), locations.setting_field);
    if (!setting) return;
    const _bstr_t name = read_text(*setting, locations.setting_name);
    users.emplace_back(name.length() ? static_cast<const wchar_t*>(name) : L"", name.length());
  });
}
