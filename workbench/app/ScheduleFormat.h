#pragma once

#include <string>

#include "ScheduleModel.h"
#include "YearPainter.h"

namespace workbench {

/// The day with its weekday.
std::wstring format_day(schedule::Day day);

/// The day of a contract; an estimate begins with an approximation sign, and a day that is not known is a dash.
std::wstring format_day(const schedule::ContractDay& day);

/// What is special about a contract's dates, and why it needs attention; an exclamation mark comes before the latter.
std::wstring format_flags(const ScheduleLine& line);

/// Why there are no dates, and what the user can do; empty if there are some.
std::wstring format_reason(const Schedule& schedule);

/// From which day on the calendar knows nothing, and what that means for the dates.
std::wstring format_horizon(const Schedule& schedule, bool estimates);

/// The words of the year at a glance; those for the days before a change only in a comparison.
YearTexts year_texts(bool comparison);

}  // namespace workbench
