#include "YearMarks.h"

#include <algorithm>

namespace workbench {

namespace {

using schedule::Basis;
using schedule::ContractDay;
using schedule::Day;

class MarkedYear {
 public:
  explicit MarkedYear(schedule::Month first) : begin_(first / 1), end_((first + std::chrono::months{12}) / 1) {}

  void mark_closed_days(const std::optional<schedule::Calendar>& calendar) {
    const schedule::WeekdaySet weekend = calendar ? calendar->weekend : schedule::saturday_and_sunday;
    for (Day day = begin_; day < end_; day += std::chrono::days{1}) {
      if (schedule::contains(weekend, day)) add(day, mark_weekend);
      if (calendar && (day < calendar->from || day > calendar->to)) add(day, mark_unknown);
    }
    if (!calendar) return;
    for (const schedule::ClosedDay& closed : calendar->closed) add(closed.day, mark_closed);
  }

  void mark_event(const ContractDay& event, Mark mark) {
    if (!event.date) return;
    add(*event.date, mark);
    if (event.basis == Basis::estimate) add(*event.date, mark_estimate);
  }

  /// The day before a change, unless it stayed.
  void mark_old(const ContractDay& old_day, const ContractDay& now, Mark mark) {
    if (old_day.date && old_day.date != now.date) add(*old_day.date, mark);
  }

  std::map<Day, Marks> finish() { return std::move(marks_); }

 private:
  void add(Day day, Mark mark) {
    if (day >= begin_ && day < end_) marks_[day] = static_cast<Marks>(marks_[day] | mark);
  }

  Day begin_;
  Day end_;
  std::map<Day, Marks> marks_;
};

}  // namespace

std::map<Day, Marks> year_marks(const Schedule& schedule, schedule::Month first) {
  MarkedYear year(first);
  year.mark_closed_days(schedule.calendar);
  for (const ScheduleLine& line : schedule.lines) {
    year.mark_event(line.row.dates.expiration, mark_expiration);
    year.mark_event(line.row.dates.roll, mark_roll);
    if (!line.before) continue;
    year.mark_old(line.before->expiration, line.row.dates.expiration, mark_old_expiration);
    year.mark_old(line.before->roll, line.row.dates.roll, mark_old_roll);
  }
  return year.finish();
}

}  // namespace workbench
