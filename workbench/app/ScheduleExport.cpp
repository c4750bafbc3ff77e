#include "ScheduleExport.h"

#include <algorithm>
#include <array>

#include "ScheduleOutput.h"
#include "ScheduleRecords.h"
#include "UiLanguage.h"
#include "YearPage.h"
#include "resource.h"

namespace workbench {

namespace {

std::string write_csv(const Schedule& schedule, const ScheduleChoice&, schedule::Day,
                      const schedule::Progress& progress) {
  return schedule_csv(rows_of(schedule), progress);
}

std::string write_icalendar(const Schedule& schedule, const ScheduleChoice&, schedule::Day today,
                            const schedule::Progress& progress) {
  return schedule_icalendar(rows_of(schedule), today, chosen_language(), progress);
}

std::string write_page(const Schedule& schedule, const ScheduleChoice& choice, schedule::Day,
                       const schedule::Progress& progress) {
  std::optional<schedule::TradingDays> days;
  if (schedule.calendar) days = trading_days(*schedule.calendar);
  return year_page(rows_of(schedule), choice.first.year(), days ? &*days : nullptr, chosen_language(), progress);
}

constexpr std::array<ExportFormat, 3> formats{{
    {IDM_EXPORT_CSV, {IDS_FILTER_CSV, L"csv"}, false, &write_csv},
    {IDM_EXPORT_ICALENDAR, {IDS_FILTER_ICALENDAR, L"ics"}, false, &write_icalendar},
    {IDM_EXPORT_HTML, {IDS_FILTER_HTML, L"html"}, true, &write_page},
}};

}  // namespace

const ExportFormat& export_format(UINT command) { return *std::ranges::find(formats, command, &ExportFormat::command); }

std::wstring schedule_text(const Schedule& schedule, const schedule::Progress& progress) {
  std::wstring text;
  for (const wchar_t unit : from_schedule_text(schedule_table(rows_of(schedule), progress))) {
    // The clipboard's lines end as those of other programs do.
    if (unit == L'\n' && !text.ends_with(L'\r')) text += L'\r';
    text += unit;
  }
  return text;
}

}  // namespace workbench
