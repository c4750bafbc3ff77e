#pragma once

#include <vector>

#include "RuleRecord.h"
#include "ScheduleModel.h"

namespace workbench {

/// The content of a store as schedules are worked out from it.
ScheduleData schedule_data(const std::vector<StoredRule>& rules, const std::vector<StoredSetting>& settings,
                           const std::vector<StoredCalendar>& calendars);

/// Today by the user's clock.
schedule::Day local_today();

}  // namespace workbench
