#include "CheckDialog.h"

#include <utility>

#include "DialogControls.h"
#include "ScheduleFormat.h"
#include "ScheduleRecords.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr ListColumn check_columns[] = {
    {IDS_COLUMN_CHECKED_RULE, 180},
    {IDS_COLUMN_CONTRACT, 66},
    {IDS_COLUMN_LISTED, 106},
    {IDS_COLUMN_FOUND, 106},
    {IDS_COLUMN_DIFFERENCE, 70, LVCFMT_RIGHT},
    {IDS_COLUMN_EXPLANATION, 260},
};

std::wstring format_difference(const schedule::DateCheck& check) {
  if (!check.days) return text(IDS_UNKNOWN_DAY);
  return (*check.days > 0 ? L"+" : L"") + std::to_wstring(*check.days);
}

std::wstring format_explanation(const Explanation& explanation) {
  const std::wstring day = format_day(explanation.day);
  if (!explanation.closed) return text(IDS_IF_CLOSED, {day});
  return text(IDS_IF_OPEN, {day, from_schedule_text(explanation.reason)});
}

}  // namespace

CheckResults::CheckResults(HWND parent) : ListPane(parent, IDC_DATES_LIST, IDS_NOTHING_IMPORTED, check_columns) {}

void CheckResults::show(CheckedList list) {
  list_ = std::move(list);
  show_rows(list_.dates.size(), 0);
}

std::wstring CheckResults::cell(size_t row, size_t column) const {
  const CheckedDate& checked = list_.dates[row];
  switch (column_at(column).title) {
    case IDS_COLUMN_CHECKED_RULE: {
      const RuleMatches& matches = list_.rules.at(checked.rule);
      return text(IDS_RULE_MATCHES,
                  {from_schedule_text(checked.rule), std::to_wstring(matches.matches), std::to_wstring(matches.dates)});
    }
    case IDS_COLUMN_CONTRACT:
      return from_schedule_text(schedule::to_text(checked.check.listed.contract));
    case IDS_COLUMN_LISTED:
      return format_day(checked.check.listed.date);
    case IDS_COLUMN_FOUND:
      return format_day(checked.check.found);
    case IDS_COLUMN_DIFFERENCE:
      return format_difference(checked.check);
    case IDS_COLUMN_EXPLANATION: {
      std::wstring words;
      for (const Explanation& explanation : checked.explained_by)
        words += (words.empty() ? L"" : text(IDS_SEPARATOR)) + format_explanation(explanation);
      return words;
    }
    default:
      return {};
  }
}

std::optional<COLORREF> CheckResults::row_color(size_t row) const {
  return list_.dates[row].check.is_match() ? std::nullopt : std::optional(marked_row_color);
}

CheckDialog::CheckDialog(const ScheduleData& data, const FileDialogs& files) : DatesDialog(IDD_CHECK, data, files) {}

void CheckDialog::on_init() {
  fill_choices(IDS_CALENDAR_OF_SETTING, {IDS_DAY_OF_SETTING, IDS_COLUMN_ROLL, IDS_COLUMN_EXPIRATION});
  results_.emplace(handle());
  place(*results_, IDC_DATES_AREA);
}

void CheckDialog::on_command(WORD id, WORD code) {
  if (id == IDC_DATES_IMPORT) import();
  if ((id == IDC_DATES_CALENDAR || id == IDC_DATES_AGAINST) && code == CBN_SELCHANGE && imported_) check();
}

LRESULT CheckDialog::on_notify(NMHDR& notification) {
  return results_ && notification.idFrom == IDC_DATES_LIST ? results_->notify(notification) : 0;
}

void CheckDialog::import() {
  std::wstring path;
  const std::optional<std::string> bytes = ask_for_file(path);
  if (!bytes) return;
  const auto read = run_cancellable(
      [&](const schedule::Progress& progress) { return schedule::read_rule_date_list(*bytes, progress); });
  if (!read) return;
  dates_ = *read;
  imported_ = true;
  check();
}

CheckChoice CheckDialog::choice() const {
  CheckChoice choice;
  if (const schedule::Calendar* calendar = chosen_calendar()) choice.calendar = calendar->name;
  const int day = chosen_item(control(IDC_DATES_AGAINST));
  if (day > 0) choice.against = day == 1 ? schedule::Against::roll : schedule::Against::expiration;
  return choice;
}

void CheckDialog::check() {
  const auto list = run_cancellable(
      [&](const schedule::Progress& progress) { return check_list(data(), dates_, choice(), progress); });
  if (list) show(*list);
}

void CheckDialog::show(const CheckedList& list) {
  std::size_t matches = 0;
  for (const auto& [rule, found] : list.rules) matches += found.matches;
  SetWindowTextW(results_->heading(),
                 text(IDS_CHECK_SUMMARY, {std::to_wstring(list.dates.size()), std::to_wstring(matches),
                                          std::to_wstring(list.dates.size() - matches)})
                     .c_str());
  std::vector<std::wstring> messages;
  for (const schedule::Mistake& mistake : list.mistakes) messages.push_back(format_mistake(mistake));
  show_messages(messages);
  results_->show(list);
}

}  // namespace workbench
