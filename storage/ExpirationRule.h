#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <optional>

#include "FieldIds.h"
#include "StorageBlock.h"

/// The unit of the roll offset.
enum DayType : long { DAYTYPE_TRADING_DAYS = 0, DAYTYPE_CALENDAR_DAYS = 1 };

/// How the day is given from which the roll offset counts back.
enum DayMode : long { DAYMODE_DAY_OF_MONTH = 0, DAYMODE_WEEKDAY = 1 };

/// The month of the day, relative to the contract month.
enum RuleMonth : long { MONTH_PREVIOUS = 0, MONTH_CURRENT = 1, MONTH_NEXT = 2 };

/// The value of `WeekOrdinal` for the last occurrence of the weekday in the month; 1 to 4 are the first to the fourth.
inline constexpr long last_week_ordinal = 5;

/// On which day a contract series expires, and how many days before that it is rolled over. Both sets of day fields are
/// always kept, whichever of them the mode uses. Values are not range-checked here: -1 stands for "nothing chosen".
struct ExpirationRule {
  _bstr_t RuleName;       ///< unique among the rules, code unit by code unit
  long RollOffset = 0;    ///< days before the given day, 0 to 99
  long DayType = 0;       ///< a `::DayType`
  long DayMode = 0;       ///< a `::DayMode`
  long DayOfMonth = 0;    ///< 1 to 31
  long DayMonth = 0;      ///< a `RuleMonth`, for `DayOfMonth`
  long WeekOrdinal = 0;   ///< 1 to 4, or `last_week_ordinal`
  long Weekday = 0;       ///< 0 = Sunday to 6 = Saturday
  long WeekdayMonth = 0;  ///< a `RuleMonth`, for `Weekday`
  long MoveToNextTradingDay =
      0;  ///< 1 = an expiration day on which the exchange is closed moves to the next trading day
};

/// One number of a rule.
struct RuleNumber {
  tagKVFIELDID field = {};
  long ExpirationRule::*member = nullptr;
  std::optional<long> initial;  ///< the value of a new rule; without one the host's new row keeps its own
};

/// Every number of a rule. In this order a new table declares them, a new rule gets its initial values and the rule
/// service takes its arguments.
inline constexpr std::array rule_numbers = {
    RuleNumber{KVFIELD_ROLL_OFFSET, &ExpirationRule::RollOffset, 0},
    RuleNumber{KVFIELD_DAY_TYPE, &ExpirationRule::DayType, DAYTYPE_TRADING_DAYS},
    RuleNumber{KVFIELD_DAY_MODE, &ExpirationRule::DayMode, std::nullopt},
    RuleNumber{KVFIELD_DAY_OF_MONTH, &ExpirationRule::DayOfMonth, 1},
    RuleNumber{KVFIELD_DAY_MONTH, &ExpirationRule::DayMonth, MONTH_CURRENT},
    RuleNumber{KVFIELD_WEEK_ORDINAL, &ExpirationRule::WeekOrdinal, 1},
    RuleNumber{KVFIELD_WEEKDAY, &ExpirationRule::Weekday, 1},
    RuleNumber{KVFIELD_WEEKDAY_MONTH, &ExpirationRule::WeekdayMonth, MONTH_CURRENT},
    RuleNumber{KVFIELD_MOVE_TO_NEXT_TRADING_DAY, &ExpirationRule::MoveToNextTradingDay, 0},
};

/// Every field of a rule's row, in the order in which a new table declares them.
inline constexpr auto rule_fields = [] {
  std::array<tagKVFIELDID, 2 + rule_numbers.size()> fields = {KVFIELD_RULE_ID, KVFIELD_RULE_NAME};
  std::transform(rule_numbers.begin(), rule_numbers.end(), fields.begin() + 2,
                 [](const RuleNumber& number) { return number.field; });
  return fields;
}();

/// A free-standing table with the one row of a rule that is not stored yet: the initial values of a new rule, and the
/// name that `load_name` returns once the row is there. Throws a `_com_error` when there is no table.
IkvTablePtr create_new_rule_row(const std::function<_bstr_t()>& load_name);

/// The row of the rule that an editor shows: the current row of a table of one rule. Its fields are read at each call,
/// as `GetField` does; every method throws E_POINTER as a `_com_error` without a table.
class RuleRow {
 public:
  explicit RuleRow(const IkvTablePtr& table) noexcept : table_(table) {}

  /// The rule's number: 0 for a rule that is not stored yet.
  long rule_id() const;
  void set_rule_id(long rule_id) const;
  _bstr_t name() const;
  /// One of `rule_numbers`, by its member.
  long value(long ExpirationRule::*member) const;

 private:
  IkvTablePtr table_;
};

/// Stores a new rule. `rule_id` receives its number and keeps its value when the host does not set it. Returns the
/// service's HRESULT. Throws E_POINTER as a `_com_error` when the block has no rule service.
HRESULT add_rule(const StorageBlock& storage, const ExpirationRule& rule, long& rule_id);

/// Rewrites the rule with this number, in the same way.
HRESULT update_rule(const StorageBlock& storage, long rule_id, const ExpirationRule& rule);

/// Deletes the rule with this number. Returns whether the service confirmed it; its HRESULT does not count. Throws as
/// the functions above.
bool delete_rule(const StorageBlock& storage, long rule_id);
