#pragma once

#include <span>
#include <string>
#include <vector>

#include "DateCheck.h"
#include "Progress.h"

namespace workbench::schedule {

/// A listed date of a rule and what the rule gives.
struct CheckRow {
  std::string rule;
  DateCheck check;
};

/// The columns rule, contract, listed, found, days, explained_by. Days that would explain a difference are joined by
/// semicolons.
std::string check_csv(std::span<const CheckRow> rows, const Progress& progress = {});

/// The columns rank, matched, of, the nine numbers of the rule by name, missed. Missed contracts are joined by
/// semicolons.
std::string found_csv(const FoundRules& found, const Progress& progress = {});

/// The same columns for a screen.
std::string found_table(const FoundRules& found, const Progress& progress = {});

/// An object with counted, agreeing, closed and beyond_calendar (arrays of contract and date) and rules, an array of
/// objects with the names of the columns.
std::string found_json(const FoundRules& found, const Progress& progress = {});

}  // namespace workbench::schedule
