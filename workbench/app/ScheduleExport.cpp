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

std::string write_csv(const Schedule& schedule, const ScheduleChoice&, schedule::Day) {
  return schedule_csv(rows_of(schedule));
}

std::string write_icalendar(const Schedule& schedule, const ScheduleChoice&, schedule::Day today) {
  return schedule_icalendar(rows_of(schedule), today, chosen_language());
}

std::string write_page(const Schedule& schedule, const ScheduleChoice& choice, schedule::Day) {
  if (!schedule.calendar) return year_page(rows_of(schedule), choice.first.year(), nullptr, chosen_language());
  const schedule::TradingDays days = trading_days(*schedule.calendar);
  return year_page(rows_of(schedule), choice.first.year(), &days, chosen_language());
}

constexpr std::array<ExportFormat, 3> formats{{
    {IDM_EXPORT_CSV, {IDS_FILTER_CSV, L"csv"}, false, &write_csv},
    {IDM_EXPORT_ICALENDAR, {IDS_FILTER_ICALENDAR, L"ics"}, false, &write_icalendar},
    {IDM_EXPORT_HTML, {IDS_FILTER_HTML, L"html"}, true, &write_page},
}};

}  // namespace

const ExportFormat& export_format(UINT command) { return *std::ranges::find(formats, command, &ExportFormat::command); }

std::wstring schedule_text(const Schedule& schedule) {
  std::wstring text = from_schedule_text(schedule_table(rows_of(schedule)));
  // The clipboard's lines end as those of other programs do.
  for (size_t at = text.find(L'\n'); at != std::wstring::npos; at = text.find(L'\n', at + 2)) {
    if (at == 0 || text[at - 1] != L'\r') text.insert(at, 1, L'\r');
  }
  return text;
}

}  // namespace workbench
