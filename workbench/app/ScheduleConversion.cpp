#include "ScheduleConversion.h"

#include <windows.h>

#include "ScheduleRecords.h"

namespace workbench {

ScheduleData schedule_data(const std::vector<StoredRule>& rules, const std::vector<StoredSetting>& settings,
                           const std::vector<StoredCalendar>& calendars) {
  ScheduleData data;
  for (const StoredRule& stored : rules) data.rules.push_back({stored.number, to_named(stored.rule)});
  for (const StoredSetting& stored : settings) data.settings.push_back({stored.number, to_named(stored.setting)});
  for (const StoredCalendar& stored : calendars) data.calendars.push_back(stored.calendar);
  return data;
}

schedule::Day local_today() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return std::chrono::year{now.wYear} / std::chrono::month{now.wMonth} / std::chrono::day{now.wDay};
}

}  // namespace workbench
