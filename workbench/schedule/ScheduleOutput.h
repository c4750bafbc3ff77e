#pragma once

#include <span>
#include <string>

#include "Mistakes.h"
#include "Progress.h"
#include "ScheduleRow.h"

namespace workbench::schedule {

/// The columns rule, setting, contract, specified, expiration, roll, flags. Flags are joined by semicolons, and only
/// what is unknown is empty.
std::string schedule_csv(std::span<const ScheduleRow> rows, const Progress& progress = {});

/// The same columns for a screen.
std::string schedule_table(std::span<const ScheduleRow> rows, const Progress& progress = {});

/// An array of objects with the same names; what is unknown is null, flags are an array.
std::string schedule_json(std::span<const ScheduleRow> rows, const Progress& progress = {});

/// An iCalendar file with one all-day event for each known roll day and each known expiration day. `today` is written
/// as the day of the events' last change.
std::string schedule_icalendar(std::span<const ScheduleRow> rows, Day today, Language language,
                               const Progress& progress = {});

}  // namespace workbench::schedule
