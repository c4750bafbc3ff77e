#include "CalendarDialog.h"

#include <algorithm>
#include <span>
#include <utility>

#include "ICalendar.h"
#include "ProgressDialog.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr int scope_controls[] = {IDC_CALENDAR_NAME_LABEL, IDC_CALENDAR_NAME,     IDC_CALENDAR_FROM_LABEL,
                                  IDC_CALENDAR_FROM,       IDC_CALENDAR_TO_LABEL, IDC_CALENDAR_TO};

/// A font with letters of equal width, as high as those of the dialog, for tables.
base::Font table_font(HWND dialog) {
  LOGFONTW font{};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0)), sizeof(font), &font);
  font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
  font.lfFaceName[0] = L'\0';
  return base::Font(CreateFontIndirectW(&font));
}

std::wstring with_line_ends(std::wstring_view text) {
  std::wstring result;
  for (const wchar_t unit : text) {
    if (unit == L'\n') result += L'\r';
    result += unit;
  }
  return result;
}

}  // namespace

CalendarDialog::CalendarDialog(NamedRecords stored, std::vector<schedule::Calendar> calendars, std::wstring question)
    : ModalDialog(IDD_CALENDAR),
      stored_(std::move(stored)),
      calendars_(std::move(calendars)),
      question_(std::move(question)) {}

CalendarDialog::CalendarDialog(NamedRecords stored, std::string events, std::wstring question)
    : ModalDialog(IDD_CALENDAR),
      stored_(std::move(stored)),
      events_(std::move(events)),
      question_(std::move(question)) {}

void CalendarDialog::on_init() {
  SetDlgItemTextW(handle(), IDC_CALENDAR_QUESTION, question_.c_str());
  if (!events_)
    for (const int id : scope_controls) ShowWindow(control(id), SW_HIDE);
  font_ = table_font(handle());
  SendDlgItemMessageW(handle(), IDC_CALENDAR_CHANGES, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
  preview();
}

void CalendarDialog::on_command(WORD id, WORD code) {
  const bool is_scope = id == IDC_CALENDAR_NAME || id == IDC_CALENDAR_FROM || id == IDC_CALENDAR_TO;
  if (is_scope && code == EN_CHANGE) preview();
  if (id == IDOK && IsWindowEnabled(control(IDOK))) close(IDOK);
}

void CalendarDialog::preview() {
  std::string shown;
  bool changes = false;
  try {
    ProgressDialog progress(handle());
    if (events_) shown = read_events(schedule::part_of(progress.progress(), 0, 50));
    if (shown.empty()) shown = describe_changes(changes, schedule::part_of(progress.progress(), 50, 100));
  } catch (const schedule::Cancelled&) {
    close(IDCANCEL);
    return;
  }
  EnableWindow(control(IDOK), changes);
  SetDlgItemTextW(handle(), IDC_CALENDAR_CHANGES, with_line_ends(from_schedule_text(shown)).c_str());
}

std::string CalendarDialog::read_events(const schedule::Progress& progress) {
  const auto entered = [this](int id) { return to_schedule_text(base::window_text(control(id))); };
  const std::string name = entered(IDC_CALENDAR_NAME);
  const std::optional<schedule::Day> from = schedule::try_parse_day(entered(IDC_CALENDAR_FROM));
  const std::optional<schedule::Day> to = schedule::try_parse_day(entered(IDC_CALENDAR_TO));
  calendars_.clear();
  if (name.empty() || !from || !to) return to_schedule_text(text(IDS_CALENDAR_SCOPE_NEEDED));
  schedule::CalendarReading reading = schedule::read_icalendar(*events_, {name, *from, *to}, progress);
  if (reading.calendar) calendars_.push_back(*std::move(reading.calendar));
  std::string mistakes;
  constexpr std::size_t most_mistakes = 1000;
  for (const schedule::Mistake& mistake :
       std::span(reading.mistakes).first(std::min(most_mistakes, reading.mistakes.size())))
    mistakes += std::to_string(mistake.line) + ": " + describe(mistake, chosen_language()) + '\n';
  return mistakes;
}

std::string CalendarDialog::describe_changes(bool& changes, const schedule::Progress& progress) const {
  std::string shown;
  for (std::size_t i = 0; i < calendars_.size(); ++i) {
    const schedule::Progress planning =
        schedule::part_of(progress, 100 * i / calendars_.size(), 100 * (i + 1) / calendars_.size());
    const schedule::CalendarPlan plan =
        plan_calendar(calendars_[i], stored_.calendars, stored_.rules, stored_.settings, planning);
    changes |= !plan.is_same;
    if (calendars_.size() > 1) shown += calendars_[i].name + '\n';
    for (const schedule::Mistake& note : plan.notes) shown += describe(note, chosen_language()) + '\n';
    if (!plan.days.empty()) shown += '\n' + schedule::aligned_text(table_of(plan.days));
    if (!plan.dates.empty()) shown += '\n' + schedule::aligned_text(table_of(plan.dates));
    shown += '\n';
  }
  return shown;
}

}  // namespace workbench
