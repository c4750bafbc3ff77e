#include "ExpirationRule.h"

#include <tuple>

#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

namespace {

/// Calls the rule service with the name and then every number of a rule.
template <class Call>
HRESULT with_arguments(const ExpirationRule& rule, const Call& call) {
  return std::apply([&](const auto&... number) { return call(rule.RuleName.copy(false), rule.*number.member...); },
                    rule_numbers);
}

}  // namespace

IkvTablePtr create_new_rule_row(const std::function<_bstr_t()>& load_name) {
  IkvTablePtr table;
  create_rule_table(table);
  table->AppendRow();
  table->MoveLast();
  SetField(table, KVFIELD_RULE_NAME, load_name());
  for (const RuleNumber& number : rule_numbers) {
    if (number.initial) SetField(table, number.field, *number.initial);
  }
  return table;
}

long RuleRow::rule_id() const { return GetField<long>(table_, KVFIELD_RULE_ID); }

void RuleRow::set_rule_id(long rule_id) const { SetField(table_, KVFIELD_RULE_ID, rule_id); }

_bstr_t RuleRow::name() const { return GetField<_bstr_t>(table_, KVFIELD_RULE_NAME); }

long RuleRow::value(long ExpirationRule::*member) const {
  return GetField<long>(table_, std::ranges::find(rule_numbers, member, &RuleNumber::member)->field);
}

HRESULT add_rule(const StorageBlock& storage, const ExpirationRule& rule, long& rule_id) {
  const IkvExpirationRuleServicePtr rules = storage.rules;
  return with_arguments(rule, [&](BSTR name, auto... numbers) { return rules->add_rule(name, numbers..., &rule_id); });
}

HRESULT update_rule(const StorageBlock& storage, long rule_id, const ExpirationRule& rule) {
  const IkvExpirationRuleServicePtr rules = storage.rules;
  return with_arguments(rule,
                        [&](BSTR name, auto... numbers) { return rules->update_rule(rule_id, name, numbers...); });
}

bool delete_rule(const StorageBlock& storage, long rule_id) {
  long ok = 0;
  const IkvExpirationRuleServicePtr rules = storage.rules;
  rules->delete_rule(rule_id, &ok);
  return ok == 1;
}
