#pragma once

#include <string>
#include <vector>

#include "ContractDates.h"

namespace workbench::schedule {

/// The dates of one contract and what gives them.
struct ScheduleRow {
  std::string rule;
  std::string setting;  ///< the symbol source setting that uses the rule; empty if none is meant
  ContractDates dates;
  std::string calendar{};  ///< the calendar that the dates rest on; empty if none is meant
};

/// The flags of these dates, in this order: clamped, moved, closed, beyond-calendar, estimate, no-date:FIELD for each
/// field whose value has no meaning.
std::vector<std::string> flag_names(const ContractDates& dates);

/// The texts with this separator between them.
std::string joined(const std::vector<std::string>& texts, std::string_view separator);

/// The day as text; empty if it is not known.
std::string known_text(const ContractDay& day);

}  // namespace workbench::schedule
