#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace workbench::schedule {

/// The nine numbers of a rule, as the store and the host keep them. Any value may occur; `rule_fields` gives the ranges
/// in which a value has a meaning. The initial values are those of a new rule.
struct RuleNumbers {
  std::int32_t roll_offset = 0;               ///< days from the roll day to the expiration day
  std::int32_t day_type = 0;                  ///< unit of the offset: 0 trading days, 1 calendar days
  std::int32_t day_mode = 0;                  ///< 0: a day of a month, 1: a weekday of a month
  std::int32_t day_of_month = 1;              ///< 1 to 31
  std::int32_t day_month = 1;                 ///< 0 previous, 1 current, 2 next month
  std::int32_t week_ordinal = 1;              ///< 1 to 4; 5: the last one
  std::int32_t weekday = 1;                   ///< 0: Sunday
  std::int32_t weekday_month = 1;             ///< as `day_month`
  std::int32_t move_to_next_trading_day = 0;  ///< 1: a closed day moves to the next open one; else to the previous one

  bool operator==(const RuleNumbers&) const = default;
};

/// One number of a rule: its name in files and stores, and the least and the greatest value.
struct RuleField {
  const char* name;
  std::int32_t RuleNumbers::*value;
  std::int32_t least;
  std::int32_t greatest;
};

/// The numbers of a rule in the order in which files and stores have them.
inline constexpr std::array<RuleField, 9> rule_fields{{
    {"RollOffset", &RuleNumbers::roll_offset, 0, 99},
    {"DayType", &RuleNumbers::day_type, 0, 1},
    {"DayMode", &RuleNumbers::day_mode, 0, 1},
    {"DayOfMonth", &RuleNumbers::day_of_month, 1, 31},
    {"DayMonth", &RuleNumbers::day_month, 0, 2},
    {"WeekOrdinal", &RuleNumbers::week_ordinal, 1, 5},
    {"Weekday", &RuleNumbers::weekday, 0, 6},
    {"WeekdayMonth", &RuleNumbers::weekday_month, 0, 2},
    {"MoveToNextTradingDay", &RuleNumbers::move_to_next_trading_day, 0, 1},
}};

}  // namespace workbench::schedule
