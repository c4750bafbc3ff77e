#include "RuleUsers.h"

#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

namespace {

_bstr_t read_text(IKV_kvudfcom::IkvField& field, const SnagtrapUtil::SourceLocation& place) {
  _bstr_t text;
  SnagtrapUtil::require_success(FieldAccess<_bstr_t>::read(field, text), place);
  return text;
}

}  // namespace

void collect_rule_users(const IkvTablePtr& settings, const _bstr_t& rule_name, const RuleUsersLocations& places,
                        std::vector<std::wstring>& users) {
  for_each_row(settings, [&] {
    IkvFieldPtr rule;
    if (find_field(settings, KVFIELD_RULE_NAME, rule) != S_OK || !rule) return;
    if (!platform::same_text(read_text(*rule, places.rule_name), rule_name)) return;
    IkvFieldPtr setting;
    SnagtrapUtil::require_success(find_field(settings, KVFIELD_SETTING_NAME, setting), places.setting_field);
    if (!setting) return;
    const _bstr_t name = read_text(*setting, places.setting_name);
    users.emplace_back(name.length() ? static_cast<const wchar_t*>(name) : L"", name.length());
  });
}
