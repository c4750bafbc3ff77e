#include "ExpirationRule.h"

#include "Tables.h"
#include "zdStorageGetFieldHelper.h"

IkvTablePtr create_new_rule_row(const _bstr_t& name) {
  IkvTablePtr table;
  create_rule_table(table);
  table->AppendRow();
  table->MoveLast();
  const ExpirationRule defaults;
  SetField(table, KVFIELD_RULE_NAME, name);
  SetField(table, KVFIELD_ROLL_OFFSET, defaults.RollOffset);
  SetField(table, KVFIELD_DAY_TYPE, defaults.DayType);
  SetField(table, KVFIELD_DAY_OF_MONTH, defaults.DayOfMonth);
  SetField(table, KVFIELD_DAY_MONTH, defaults.DayMonth);
  SetField(table, KVFIELD_WEEK_ORDINAL, defaults.WeekOrdinal);
  SetField(table, KVFIELD_WEEKDAY, defaults.Weekday);
  SetField(table, KVFIELD_WEEKDAY_MONTH, defaults.WeekdayMonth);
  SetField(table, KVFIELD_MOVE_TO_NEXT_TRADING_DAY, defaults.MoveToNextTradingDay);
  return table;
}

HRESULT add_rule(const StorageBlock& storage, const ExpirationRule& rule, long& rule_id) {
  return storage.rules->add_rule(rule.RuleName.copy(false), rule.RollOffset, rule.DayType, rule.DayMode,
                                 rule.DayOfMonth, rule.DayMonth, rule.WeekOrdinal, rule.Weekday, rule.WeekdayMonth,
                                 rule.MoveToNextTradingDay, &rule_id);
}

HRESULT update_rule(const StorageBlock& storage, long rule_id, const ExpirationRule& rule) {
  return storage.rules->update_rule(rule_id, rule.RuleName.copy(false), rule.RollOffset, rule.DayType, rule.DayMode,
                                    rule.DayOfMonth, rule.DayMonth, rule.WeekOrdinal, rule.Weekday, rule.WeekdayMonth,
                                    rule.MoveToNextTradingDay);
}
