#pragma once

#include <span>
#include <string>

#include "Mistakes.h"
#include "Progress.h"
#include "ScheduleRow.h"

namespace workbench::schedule {

/// One self-contained HTML page of a year, readable without script and meant for two printed pages: twelve months with
/// the roll and expiration days of the rows and their rules, and a table of all rows, in smaller type the more rows
/// there are. Up to about 400 fit on the two pages. `calendar` marks the closed days; without one only the weekend is
/// marked.
std::string year_page(std::span<const ScheduleRow> rows, std::chrono::year year, const TradingDays* calendar,
                      Language language, const Progress& progress = {});

}  // namespace workbench::schedule
