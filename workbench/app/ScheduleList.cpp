#include "ScheduleList.h"

#include "ScheduleFormat.h"
#include "ScheduleRecords.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr COLORREF estimate_color = RGB(112, 112, 112);

constexpr ListColumn date_columns[] = {
    {IDS_COLUMN_SCHEDULE_OF, 122}, {IDS_COLUMN_CONTRACT, 62}, {IDS_COLUMN_SPECIFIED, 98},
    {IDS_COLUMN_EXPIRATION, 98},   {IDS_COLUMN_ROLL, 98},     {IDS_COLUMN_FLAGS, 144},
};

constexpr ListColumn comparing_columns[] = {
    {IDS_COLUMN_SCHEDULE_OF, 122},   {IDS_COLUMN_CONTRACT, 62},      {IDS_COLUMN_EXPIRATION, 98},
    {IDS_COLUMN_OLD_EXPIRATION, 98}, {IDS_COLUMN_ROLL, 98},          {IDS_COLUMN_OLD_ROLL, 98},
    {IDS_COLUMN_SPECIFIED, 98},      {IDS_COLUMN_OLD_SPECIFIED, 98}, {IDS_COLUMN_FLAGS, 144},
};

using schedule::ContractDates;
using schedule::ContractDay;

/// The old day of a line, if it was another one.
std::wstring old_day(const ScheduleLine& line, ContractDay ContractDates::*day) {
  if (!line.before || (*line.before).*day == line.row.dates.*day) return {};
  return format_day((*line.before).*day);
}

}  // namespace

ScheduleList::ScheduleList(HWND parent) : ListPane(parent, IDC_SCHEDULE, IDS_SCHEDULE_PANE, date_columns) {}

void ScheduleList::show(const Schedule& schedule, bool comparison) {
  const int row = focused_row();
  lines_ = schedule.lines;
  if (comparison != comparison_) {
    comparison_ = comparison;
    if (comparison) {
      use_columns(comparing_columns);
    } else {
      use_columns(date_columns);
    }
  }
  show_rows(lines_.size(), row);
}

std::wstring ScheduleList::cell(size_t row, size_t column) const {
  const ScheduleLine& line = lines_[row];
  const ContractDates& dates = line.row.dates;
  switch (column_at(column).title) {
    case IDS_COLUMN_SCHEDULE_OF:
      return from_schedule_text(line.row.setting.empty() ? line.row.rule : line.row.setting);
    case IDS_COLUMN_CONTRACT: {
      const std::string contract = schedule::to_text(dates.contract);
      return {contract.begin(), contract.end()};
    }
    case IDS_COLUMN_SPECIFIED:
      return format_day(dates.specified);
    case IDS_COLUMN_EXPIRATION:
      return format_day(dates.expiration);
    case IDS_COLUMN_ROLL:
      return format_day(dates.roll);
    case IDS_COLUMN_OLD_SPECIFIED:
      return old_day(line, &ContractDates::specified);
    case IDS_COLUMN_OLD_EXPIRATION:
      return old_day(line, &ContractDates::expiration);
    case IDS_COLUMN_OLD_ROLL:
      return old_day(line, &ContractDates::roll);
    case IDS_COLUMN_FLAGS:
      return format_flags(line);
    default:
      return {};
  }
}

std::optional<COLORREF> ScheduleList::row_color(size_t row) const {
  if (lines_[row].attention != attention_none) return marked_row_color;
  if (lines_[row].row.dates.has(schedule::Basis::estimate)) return estimate_color;
  return std::nullopt;
}

}  // namespace workbench
