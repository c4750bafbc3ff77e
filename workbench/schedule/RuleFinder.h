#pragma once

#include <optional>
#include <span>
#include <vector>

#include "ContractDates.h"
#include "Progress.h"

namespace workbench::schedule {

/// A day that is known of a contract.
struct KnownDate {
  Month contract{};
  Day date{};

  bool operator==(const KnownDate&) const = default;
};

/// Which day of a rule a list of dates is about.
enum class Against { roll, expiration };

/// The day of a contract that is meant.
inline const ContractDay& chosen(const ContractDates& dates, Against against) {
  return against == Against::roll ? dates.roll : dates.expiration;
}

struct FoundRule {
  RuleNumbers rule;
  std::size_t matched = 0;      ///< how many of the dates it gives
  std::vector<Month> missed{};  ///< the contracts of the others, in the order of the dates

  bool operator==(const FoundRule&) const = default;
};

struct FoundRules {
  std::size_t counted = 0;       ///< how many dates lie within the calendar; the others do not count
  std::size_t agreeing = 0;      ///< how many rules give all of them
  std::vector<FoundRule> rules;  ///< those rules in order; if there is none, the ten that give the most dates
  std::vector<KnownDate> closed;
  std::vector<KnownDate> beyond_calendar;
};

/// The number of rules that differ in the dates they can give: every mode, day, ordinal, month and move with every
/// offset. Fields that the mode does not use hold a new rule's values, and offset 0 has trading days.
inline constexpr std::size_t rule_count = 78'804;

/// Finds the rules that give all these dates. Their order: offset 0 first; trading before calendar days; the smaller
/// offset; the weekday form before the day form; current, next, previous month; Monday to Friday before the weekend;
/// then the fields ascending. At most `limit` rules are returned.
FoundRules find_rules(std::span<const KnownDate> dates, const TradingDays& calendar, Against against,
                      std::optional<std::size_t> limit = std::nullopt, const Progress& progress = {});

/// The rule at this position, from 0 to `rule_count` - 1, in that order of all rules.
RuleNumbers rule_at(std::size_t position);

}  // namespace workbench::schedule
