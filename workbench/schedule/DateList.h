#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Mistakes.h"
#include "RuleFinder.h"

namespace workbench::schedule {

/// The month of a contract that is written as 2026-01, 202601, 2601, IF2601 or CLF26: a month, or the exchange's code,
/// which is a product followed by the last two digits of the year and the month, or by the letter of the month and
/// those of the year. Years of two digits are those from 2000 to 2099. Four digits after the letter of a month that
/// ends a product of three letters or more are refused, since they may be a year.
std::optional<Month> try_parse_contract(std::string_view text);

/// Whether the contract month is among these letters of delivery months; no letters are all months.
bool is_delivery_month(Month contract, std::string_view letters);

/// One line of a list of dates.
struct ListedDate {
  std::size_t line = 0;
  std::string rule;  ///< empty in a list that does not name rules
  KnownDate known;
};

struct DateList {
  std::vector<ListedDate> dates;  ///< the lines without mistakes
  std::vector<Mistake> mistakes;
  std::vector<std::string> ignored_columns;
};

/// Reads a file with the columns contract and date. A contract that comes again is a mistake.
DateList read_date_list(std::string_view bytes, const Progress& progress = {});

/// The same with a column rule before them. A contract that comes again with the same rule is a mistake.
DateList read_rule_date_list(std::string_view bytes, const Progress& progress = {});

}  // namespace workbench::schedule
