#pragma once

#include <cstdint>
#include <map>

#include "ScheduleModel.h"

namespace workbench {

/// What a year at a glance shows of a day; several may be true.
enum Mark : std::uint8_t {
  mark_weekend = 1,
  mark_closed = 2,  ///< a holiday of the calendar
  mark_expiration = 4,
  mark_roll = 8,
  mark_estimate = 16,        ///< one of the two rests on an estimate
  mark_old_expiration = 32,  ///< the expiration day before a change
  mark_old_roll = 64,
  mark_unknown = 128,  ///< the calendar does not know this day
};
using Marks = std::uint8_t;

/// The marks of the days of the twelve months from `first` on that have any. Without a common calendar of all lines
/// only the weekend, Saturday and Sunday, is closed.
std::map<schedule::Day, Marks> year_marks(const Schedule& schedule, schedule::Month first);

}  // namespace workbench
