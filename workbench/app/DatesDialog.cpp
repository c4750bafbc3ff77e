#include "DatesDialog.h"

#include <algorithm>

#include "DialogControls.h"
#include "ScheduleRecords.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "resource.h"

namespace workbench {

void DatesDialog::fill_choices(UINT first_calendar, std::initializer_list<UINT> days) {
  HWND calendars = control(IDC_DATES_CALENDAR);
  add_item(calendars, text(first_calendar));
  for (const schedule::Calendar& calendar : data_.calendars) add_item(calendars, from_schedule_text(calendar.name));
  for (const UINT day : days) add_item(control(IDC_DATES_AGAINST), text(day));
  choose_item(calendars, 0);
  choose_item(control(IDC_DATES_AGAINST), 0);
}

const schedule::Calendar* DatesDialog::chosen_calendar() const {
  const int item = chosen_item(control(IDC_DATES_CALENDAR));
  return item > 0 ? &data_.calendars.at(static_cast<size_t>(item) - 1) : nullptr;
}

std::optional<std::string> DatesDialog::ask_for_file(std::wstring& path) {
  const auto chosen = files_.ask_to_open(handle(), {IDS_FILTER_DATES, L"csv"});
  if (!chosen) return std::nullopt;
  path = chosen->wstring();
  auto bytes = run_cancellable([&](const schedule::Progress& progress) { return try_read_file(*chosen, progress); });
  if (!bytes) return std::nullopt;
  if (!*bytes) show_mistake(text(IDS_FILE_NOT_READ, {path}), control(IDC_DATES_IMPORT));
  return *std::move(bytes);
}

void DatesDialog::show_messages(const std::vector<std::wstring>& lines) {
  constexpr size_t most_lines = 1000;
  std::wstring shown;
  for (size_t i = 0; i < std::min(most_lines, lines.size()); ++i) shown += lines[i] + L"\r\n";
  if (lines.size() > most_lines) shown += L"...";
  SetWindowTextW(control(IDC_DATES_MESSAGES), shown.c_str());
}

std::wstring format_mistake(const schedule::Mistake& mistake, std::size_t added_lines) {
  std::wstring words = from_schedule_text(describe(mistake, chosen_language()));
  if (mistake.line <= added_lines) return words;
  return text(IDS_LINE_MESSAGE, {std::to_wstring(mistake.line - added_lines), words});
}

}  // namespace workbench
