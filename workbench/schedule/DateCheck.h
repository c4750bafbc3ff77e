#pragma once

#include <optional>
#include <vector>

#include "RuleFinder.h"

namespace workbench::schedule {

/// What a rule gives for a contract, compared with the day that the exchange lists.
struct DateCheck {
  KnownDate listed;
  ContractDay found;
  std::optional<int> days{};  ///< from the listed to the found day; negative if the rule gives an earlier one
  /// Each day of the calendar that would make the two days equal if, alone, it were open instead of closed or closed
  /// instead of open. Days of the weekend are left out, since a calendar cannot say that one is open.
  std::vector<Day> explained_by{};

  bool is_match() const { return days == 0; }
};

/// Compares the rule's roll or expiration day with the listed day.
DateCheck check_date(const RuleNumbers& rule, const KnownDate& listed, const TradingDays& calendar, Against against);

/// Whether `check` comes nearer to the listed day than `other`.
bool is_nearer(const DateCheck& check, const DateCheck& other);

}  // namespace workbench::schedule
