#pragma once

#include <array>

#include "FieldIds.h"
#include "StorageBlock.h"

/// The fields of a rule's row, in the order in which a new table declares them.
inline constexpr std::array<tagKVFIELDID, 11> rule_fields = {
    KVFIELD_RULE_ID,
    KVFIELD_RULE_NAME,
    KVFIELD_ROLL_OFFSET,
    KVFIELD_DAY_TYPE,
    KVFIELD_DAY_MODE,
    KVFIELD_DAY_OF_MONTH,
    KVFIELD_DAY_MONTH,
    KVFIELD_WEEK_ORDINAL,
    KVFIELD_WEEKDAY,
    KVFIELD_WEEKDAY_MONTH,
    KVFIELD_MOVE_TO_NEXT_TRADING_DAY,
};

/// The unit of the roll offset.
enum DayType : long { DAYTYPE_TRADING_DAYS = 0, DAYTYPE_CALENDAR_DAYS = 1 };

/// How the day is given from which the roll offset counts back.
enum DayMode : long { DAYMODE_DAY_OF_MONTH = 0, DAYMODE_WEEKDAY = 1 };

/// The month of the day, seen from the contract month.
enum RuleMonth : long { MONTH_PREVIOUS = 0, MONTH_CURRENT = 1, MONTH_NEXT = 2 };

/// The value of `WeekOrdinal` for the last occurrence of the weekday in the month; 1 to 4 are the first to the fourth.
inline constexpr long last_week_ordinal = 5;

/// On which day a contract series expires, and how many days before that it is rolled over. Both sets of day fields are
/// always kept, whichever of them the mode uses. Values are not range-checked here: -1 stands for "nothing chosen".
struct ExpirationRule {
  _bstr_t RuleName;                   ///< unique among the rules, code unit by code unit
  long RollOffset = 0;                ///< days before the given day, 0 to 99
  long DayType = 0;                   ///< a `::DayType`
  long DayMode = 0;                   ///< a `::DayMode`
  long DayOfMonth = 1;                ///< 1 to 31
  long DayMonth = MONTH_CURRENT;      ///< a `RuleMonth`, for `DayOfMonth`
  long WeekOrdinal = 1;               ///< 1 to 4, or `last_week_ordinal`
  long Weekday = 1;                   ///< 0 = Sunday to 6 = Saturday
  long WeekdayMonth = MONTH_CURRENT;  ///< a `RuleMonth`, for `Weekday`
  long MoveToNextTradingDay =
      0;  ///< 1 = an expiration day on which the exchange is closed moves to the next trading day
};

/// A free-standing table with the one row of a rule that is not stored yet: this name and the defaults of a new rule.
/// `DayMode` is left as the host gives it. Throws a `_com_error` when there is no table.
IkvTablePtr create_new_rule_row(const _bstr_t& name);

/// Stores a new rule. `rule_id` receives its number and keeps its value when the host does not set it. Answers the
/// service's HRESULT. Throws E_POINTER as a `_com_error` when the block has no rule service.
HRESULT add_rule(const StorageBlock& storage, const ExpirationRule& rule, long& rule_id);

/// Rewrites the rule with this number, in the same way.
HRESULT update_rule(const StorageBlock& storage, long rule_id, const ExpirationRule& rule);
