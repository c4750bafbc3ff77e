#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "DateCheck.h"
#include "DateList.h"
#include "ScheduleModel.h"

namespace workbench {

/// How a list of contracts and last trading days is compared.
struct CheckChoice {
  std::string calendar{};                      ///< in place of the settings' own calendars; empty: those
  std::optional<schedule::Against> against{};  ///< the day that is compared; by default the one that the setting names
};

/// A day of the calendar that alone would explain a difference.
struct Explanation {
  schedule::Day day{};
  bool closed = false;   ///< whether the calendar has it closed, and an open day would explain the difference
  std::string reason{};  ///< why it is closed

  bool operator==(const Explanation&) const = default;
};

struct CheckedDate {
  std::string rule;
  schedule::DateCheck check;
  std::vector<Explanation> explained_by{};
};

/// How many of a rule's listed dates the rule gives.
struct RuleMatches {
  std::size_t matches = 0;
  std::size_t dates = 0;
};

struct CheckedList {
  std::vector<CheckedDate> dates{};  ///< rule by rule, within a rule in the order of the list
  std::map<std::string, RuleMatches> rules{};
  std::vector<schedule::Mistake> mistakes{};  ///< lines that could not be compared, by line
};

/// Compares each listed day with what the rule gives for each setting that uses it, on its calendar. The setting that
/// comes nearest to the listed day counts, the first of several; those that do not deliver in the contract's month do
/// not count.
CheckedList check_list(const ScheduleData& data, const schedule::DateList& list, const CheckChoice& choice,
                       const schedule::Progress& progress = {});

}  // namespace workbench
