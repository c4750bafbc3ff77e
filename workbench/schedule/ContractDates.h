#pragma once

#include <cstdint>
#include <optional>

#include "Dates.h"
#include "RuleNumbers.h"
#include "TradingDays.h"

namespace workbench::schedule {

/// What a day of a contract rests on.
enum class Basis : std::uint8_t {
  calendar,         ///< on the calendar alone, or on none
  estimate,         ///< on days outside the calendar, where weekdays count as open
  beyond_calendar,  ///< on days outside the calendar, of which nothing is known
  invalid_rule,     ///< a number of the rule has no meaning
};

/// One of the three days of a contract. A roll day in calendar days is known even outside the calendar; its basis then
/// says that it is not known whether the exchange is open.
struct ContractDay {
  std::optional<Day> date{};
  Basis basis = Basis::calendar;

  bool operator==(const ContractDay&) const = default;
};

/// The days that a rule gives for one contract month.
struct ContractDates {
  Month contract{};
  ContractDay specified{};
  ContractDay expiration{};
  ContractDay roll{};
  bool clamped = false;              ///< the month does not have the specified day, so its last day stands for it
  bool moved = false;                ///< the expiration day is another than the specified day
  bool closed = false;               ///< the exchange is closed on the roll day
  std::uint16_t invalid_fields = 0;  ///< bit i: the value of `rule_fields[i]` is out of its range

  bool has(Basis basis) const { return expiration.basis == basis || roll.basis == basis; }
  bool operator==(const ContractDates&) const = default;
};

/// Contract months, both included.
struct ContractRange {
  Month first{};
  Month last{};

  bool operator==(const ContractRange&) const = default;
};

/// The contracts of which a rule may have a day from `first` to `last`.
ContractRange contracts_around(Day first, Day last);

/// Whether the expiration or the roll day lies in this year. Where one of them is not known, the specified day may lie
/// in it instead, or without one the contract month.
bool lies_in_year(const ContractDates& dates, std::chrono::year year);

/// The specified day of a rule.
struct SpecifiedDay {
  Day day{};
  bool clamped = false;
};

struct DateOptions {
  /// Whether weekdays outside the calendar count as open.
  bool estimates = false;
  /// A day of the calendar that is taken to be open if it is closed, and closed if it is open.
  std::optional<Day> toggled_day{};
};

/// Bit i is set if `rule_fields[i]` is used by the rule's mode and has a value outside its range. The mode itself is
/// checked; `MoveToNextTradingDay` is not, since every value but 1 is clear.
std::uint16_t invalid_fields(const RuleNumbers& rule);

/// The specified day of a rule without invalid fields. Needs no calendar.
SpecifiedDay specified_day(const RuleNumbers& rule, Month contract);

/// The days that the rule gives for this contract month, each determined on its own. Takes the same time for every
/// contract month and offset, and allocates nothing.
ContractDates contract_dates(const RuleNumbers& rule, Month contract, const TradingDays& calendar,
                             const DateOptions& options = {});

}  // namespace workbench::schedule
