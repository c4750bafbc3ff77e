#include "ScheduleFormat.h"

#include "ScheduleRecords.h"
#include "TextEncoding.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

using schedule::Basis;

constexpr unsigned weekdays = 7;

/// Adds texts with a separator between them.
class TextList {
 public:
  void add(bool condition, UINT id) {
    if (condition) add(text(id));
  }
  void add(const std::wstring& value) { joined_ += (joined_.empty() ? L"" : text(IDS_SEPARATOR)) + value; }

  const std::wstring& joined() const { return joined_; }

 private:
  std::wstring joined_;
};

}  // namespace

std::wstring format_day(schedule::Day day) {
  return base::from_utf8(schedule::to_text(day)) + L' ' +
         text(IDS_SHORT_SUNDAY + std::chrono::weekday{day}.c_encoding());
}

std::wstring format_day(const schedule::ContractDay& day) {
  if (!day.date) return text(IDS_UNKNOWN_DAY);
  const std::wstring known = format_day(*day.date);
  return day.basis == Basis::estimate ? text(IDS_ESTIMATED_DAY, {known}) : known;
}

std::wstring format_flags(const ScheduleLine& line) {
  const schedule::ContractDates& dates = line.row.dates;
  TextList flags;
  flags.add((line.attention & attention_closed_roll) != 0, IDS_FLAG_CLOSED);
  flags.add((line.attention & attention_roll_not_later) != 0, IDS_FLAG_NOT_LATER);
  flags.add((line.attention & attention_beyond_calendar) != 0, IDS_FLAG_BEYOND_CALENDAR);
  for (std::size_t field = 0; field < schedule::rule_fields.size(); ++field) {
    if ((dates.invalid_fields >> field & 1U) != 0)
      flags.add(text(IDS_FLAG_NO_DATE, {base::from_utf8(schedule::rule_fields.at(field).name)}));
  }
  flags.add(dates.clamped, IDS_FLAG_CLAMPED);
  flags.add(dates.moved, IDS_FLAG_MOVED);
  flags.add(dates.has(Basis::estimate), IDS_FLAG_ESTIMATE);
  return (line.attention == attention_none ? L"" : L"! ") + flags.joined();
}

std::wstring format_reason(const Schedule& schedule) {
  if (schedule.reason == NoDatesReason::none) return {};
  const UINT id = IDS_NOTHING_SELECTED + static_cast<UINT>(schedule.reason) - 1;
  return text(id, {from_schedule_text(schedule.subject)});
}

std::wstring format_horizon(const Schedule& schedule, bool estimates) {
  std::wstring words;
  if (schedule.unknown_before) {
    words = text(estimates ? IDS_ESTIMATES_BEFORE : IDS_UNKNOWN_BEFORE,
                 {base::from_utf8(schedule::to_text(*schedule.unknown_before))}) +
            L'\n';
  }
  if (schedule.unknown_from) {
    words += text(estimates ? IDS_ESTIMATES_FROM : IDS_UNKNOWN_FROM,
                  {base::from_utf8(schedule::to_text(*schedule.unknown_from))});
  }
  return words;
}

YearTexts year_texts(bool comparison) {
  YearTexts texts{.expiration = text(IDS_MARK_EXPIRATION),
                  .roll = text(IDS_MARK_ROLL),
                  .closed = text(IDS_MARK_CLOSED),
                  .estimate = text(IDS_MARK_ESTIMATE)};
  if (comparison) texts.before = text(IDS_MARK_BEFORE);
  for (unsigned weekday = 0; weekday < weekdays; ++weekday)
    texts.weekdays.at(weekday) = text(IDS_SHORT_SUNDAY + (weekday + 1) % weekdays);
  return texts;
}

}  // namespace workbench
