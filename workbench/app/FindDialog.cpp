#include "FindDialog.h"

#include <utility>

#include "DateList.h"
#include "DialogControls.h"
#include "PastedDates.h"
#include "RuleFormat.h"
#include "ScheduleFormat.h"
#include "ScheduleRecords.h"
#include "Texts.h"
#include "Utf8.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr ListColumn found_rule_columns[] = {
    {IDS_COLUMN_RANK, 40},    {IDS_COLUMN_MATCHED, 60}, {IDS_COLUMN_DAY, 140},
    {IDS_COLUMN_CLOSED, 110}, {IDS_COLUMN_OFFSET, 130}, {IDS_COLUMN_MISSED, 220},
};

/// In characters. A line for every month that there can be takes a tenth of it, and a control shows no more at once.
constexpr std::size_t longest_list = 500'000;

Rule rule_of(const schedule::FoundRule& found) { return from_named(schedule::NamedRule{{}, found.rule}); }

/// The dates as lines, with the message about them before.
std::wstring format_dates(UINT message, const std::vector<schedule::KnownDate>& dates) {
  std::wstring words;
  for (const schedule::KnownDate& known : dates) {
    words += (words.empty() ? L"" : text(IDS_SEPARATOR)) + from_schedule_text(schedule::to_text(known.contract)) +
             L' ' + format_day(known.date);
  }
  return text(message, {words});
}

std::wstring summary_of(const schedule::FoundRules& found) {
  const std::wstring counted = std::to_wstring(found.counted);
  if (found.counted == 0) return text(IDS_NO_DATES);
  if (found.agreeing == 0) return text(IDS_NO_RULE_FOUND, {counted});
  if (found.agreeing == 1) return text(IDS_ONE_RULE_FOUND, {counted});
  return text(IDS_RULES_FOUND, {counted, std::to_wstring(found.agreeing)});
}

}  // namespace

FoundRuleList::FoundRuleList(HWND parent)
    : ListPane(parent, IDC_DATES_LIST, IDS_NOTHING_SEARCHED, found_rule_columns) {}

void FoundRuleList::show(schedule::FoundRules found) {
  found_ = std::move(found);
  show_rows(found_.rules.size(), 0);
}

const schedule::FoundRule* FoundRuleList::selected() const {
  const int row = focused_row();
  return row >= 0 && static_cast<size_t>(row) < found_.rules.size() ? &found_.rules[static_cast<size_t>(row)] : nullptr;
}

std::wstring FoundRuleList::cell(size_t row, size_t column) const {
  const schedule::FoundRule& found = found_.rules[row];
  switch (column_at(column).title) {
    case IDS_COLUMN_RANK:
      return std::to_wstring(row + 1);
    case IDS_COLUMN_MATCHED:
      return std::to_wstring(found.matched) + L'/' + std::to_wstring(found_.counted);
    case IDS_COLUMN_DAY:
      return format_rule_day(rule_of(found));
    case IDS_COLUMN_CLOSED:
      return format_move(rule_of(found));
    case IDS_COLUMN_OFFSET:
      return format_offset(rule_of(found));
    case IDS_COLUMN_MISSED: {
      std::wstring missed;
      for (const schedule::Month month : found.missed)
        missed += (missed.empty() ? L"" : L" ") + from_schedule_text(schedule::to_text(month));
      return missed;
    }
    default:
      return {};
  }
}

FindDialog::FindDialog(const ScheduleData& data, const FileDialogs& files, Store store)
    : DatesDialog(IDD_FIND, data, files), store_(std::move(store)) {}

void FindDialog::on_init() {
  fill_choices(IDS_CHOOSE_CALENDAR, {IDS_COLUMN_ROLL, IDS_COLUMN_EXPIRATION});
  SendMessageW(control(IDC_FIND_NAME), EM_LIMITTEXT, longest_name, 0);
  SendMessageW(control(IDC_FIND_DATES), EM_LIMITTEXT, longest_list, 0);
  rules_.emplace(handle());
  place(*rules_, IDC_DATES_AREA);
  EnableWindow(control(IDC_FIND_STORE), FALSE);
}

void FindDialog::on_command(WORD id, WORD) {
  if (id == IDC_DATES_IMPORT) import();
  if (id == IDC_FIND_RUN) find();
  if (id == IDC_FIND_STORE) store_selected();
}

LRESULT FindDialog::on_notify(NMHDR& notification) {
  return rules_ && notification.idFrom == IDC_DATES_LIST ? rules_->notify(notification) : 0;
}

void FindDialog::import() {
  std::wstring path;
  const std::optional<std::string> bytes = ask_for_file(path);
  if (!bytes) return;
  if (bytes->size() > longest_list) return show_mistake(text(IDS_DATES_TOO_LONG, {path}), control(IDC_DATES_IMPORT));
  std::size_t invalid_line = 0;
  const std::optional<std::string> decoded = schedule::try_decode(*bytes, invalid_line);
  if (!decoded) return show_mistake(text(IDS_FILE_NOT_TEXT, {path}), control(IDC_DATES_IMPORT));
  std::wstring shown;
  for (const wchar_t unit : from_schedule_text(*decoded)) {
    if (unit == L'\n') shown += L'\r';
    if (unit != L'\r') shown += unit;
  }
  SetWindowTextW(control(IDC_FIND_DATES), shown.c_str());
  if (chosen_calendar()) find();
}

void FindDialog::find() {
  const schedule::Calendar* calendar = chosen_calendar();
  if (!calendar) return show_mistake(text(IDS_CALENDAR_NEEDED), control(IDC_DATES_CALENDAR));
  const PastedDates pasted = date_file_of(to_schedule_text(base::window_text(control(IDC_FIND_DATES))));
  const schedule::Against against =
      chosen_item(control(IDC_DATES_AGAINST)) == 1 ? schedule::Against::expiration : schedule::Against::roll;
  schedule::DateList list;
  const auto searched = run_cancellable([&](const schedule::Progress& progress) {
    list = schedule::read_date_list(pasted.file, schedule::part_of(progress, 0, 10));
    std::vector<schedule::KnownDate> dates;
    for (const schedule::ListedDate& listed : list.dates) dates.push_back(listed.known);
    return find_rules(dates, trading_days(*calendar), against, std::nullopt, schedule::part_of(progress, 10, 100));
  });
  if (!searched) return;
  const schedule::FoundRules& found = *searched;
  std::vector<std::wstring> messages;
  if (!pasted.file.empty()) {
    for (const schedule::Mistake& mistake : list.mistakes)
      messages.push_back(format_mistake(mistake, pasted.added_lines));
  }
  if (!found.closed.empty()) messages.push_back(format_dates(IDS_CLOSED_DATES, found.closed));
  if (!found.beyond_calendar.empty()) messages.push_back(format_dates(IDS_BEYOND_DATES, found.beyond_calendar));
  show_messages(messages);
  show(found);
}

void FindDialog::show(const schedule::FoundRules& found) {
  SetWindowTextW(rules_->heading(), summary_of(found).c_str());
  EnableWindow(control(IDC_FIND_STORE), !found.rules.empty());
  rules_->show(found);
}

void FindDialog::store_selected() {
  const schedule::FoundRule* found = rules_->selected();
  if (!found) return;
  Rule rule = rule_of(*found);
  rule.name = base::window_text(control(IDC_FIND_NAME));
  HWND name = control(IDC_FIND_NAME);
  if (rule.name.empty()) return show_mistake(text(IDS_RULE_WITHOUT_NAME), name);
  if (!schedule::is_edited_name(to_schedule_text(rule.name))) return show_mistake(text(IDS_NAME_NOT_EDITED), name);
  const std::wstring refusal = store_(rule);
  if (!refusal.empty()) return show_mistake(refusal, name);
  close(IDOK);
}

}  // namespace workbench
