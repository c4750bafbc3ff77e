#include "HostRules.h"

#include "ExpirationRule.h"
#include "FilledBlock.h"
#include "RuleUsers.h"
#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

using workbench::Rule;
using workbench::StoredRule;

namespace {

void require(HRESULT result) {
  if (FAILED(result)) throw _com_error(result);
}

ExpirationRule as_entered(const Rule& rule) {
  return {.RuleName = rule.name.c_str(),
          .RollOffset = rule.roll_offset,
          .DayType = rule.day_type,
          .DayMode = rule.day_mode,
          .DayOfMonth = rule.day_of_month,
          .DayMonth = rule.day_month,
          .WeekOrdinal = rule.week_ordinal,
          .Weekday = rule.weekday,
          .WeekdayMonth = rule.weekday_month,
          .MoveToNextTradingDay = rule.move_to_next_trading_day};
}

}  // namespace

HostRules::HostRules(IUnknown* storage) : storage_(test_support::filled_block(storage)) {}

std::vector<StoredRule> HostRules::load() const {
  std::vector<StoredRule> rules;
  const IkvTablePtr table = open_rules_table(storage_, 0);
  for_each_row(table, [&] {
    const auto name = GetField<_bstr_t>(table, KVFIELD_RULE_NAME);
    rules.push_back({.number = GetField<long>(table, KVFIELD_RULE_ID), .rule = {.name{name, name.length()}}});
  });
  return rules;
}

void HostRules::apply(const StreamChange& change) {
  switch (change.kind) {
    case StreamChange::Kind::add:
      return add(change.rule);
    case StreamChange::Kind::update:
      return update(change.old.number, change.rule);
    case StreamChange::Kind::remove:
      return remove(change.old.number);
  }
}

void HostRules::add(const Rule& rule) {
  const IkvTablePtr row = create_new_rule_row([] { return _bstr_t(L"new"); });
  long number = 0;
  require(add_rule(storage_, as_entered(rule), number));
  SetField(row, KVFIELD_RULE_ID, number);
}

void HostRules::update(long number, const Rule& rule) {
  const IkvTablePtr row = open_rules_table(storage_, number);
  require(update_rule(storage_, GetField<long>(row, KVFIELD_RULE_ID), as_entered(rule)));
}

void HostRules::remove(long number) {
  const IkvTablePtr row = open_rules_table(storage_, number);
  std::vector<std::wstring> users;
  const auto location = ZD_LOCATION_IN("ExpirationRulesListDialog.cpp", 139);
  collect_rule_users(open_symbol_source_settings_table(storage_), GetField<_bstr_t>(row, KVFIELD_RULE_NAME),
                     {location, location, location}, users);
  if (!users.empty()) return;
  long ok = 0;
  require(storage_.rules->delete_rule(number, &ok));
  if (ok != 1) throw _com_error(E_UNEXPECTED);
}
