#include "ChangesDialog.h"

#include <array>
#include <utility>

#include "RuleFormat.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr ListColumn changes_columns[] = {
    {IDS_COLUMN_CHANGE_TIME, 136}, {IDS_COLUMN_CHANGE_USER, 104}, {IDS_COLUMN_CHANGE_KIND, 70},
    {IDS_COLUMN_CHANGE_OLD, 224},  {IDS_COLUMN_CHANGE_NEW, 224},
};

/// The seconds of a time such as 2026-01-16T08:30:05.123Z, with a space between the day and the hour.
std::wstring format_time(std::wstring time) {
  constexpr size_t day_length = 10;
  constexpr size_t length_to_seconds = 19;
  if (time.size() < length_to_seconds) return time;
  time.resize(length_to_seconds);
  time[day_length] = L' ';
  return time;
}

/// What distinguishes a rule from the one that it replaced or that replaced it; the whole rule if it stands alone or if
/// only fields differ that it does not use.
std::wstring format_differences(const std::optional<Rule>& rule, const std::optional<Rule>& other) {
  if (!rule) return {};
  const auto parts_of = [](const Rule& described) {
    return std::array{described.name, format_offset(described), format_rule_day(described), format_move(described)};
  };
  const auto parts = parts_of(*rule);
  const auto others = other ? parts_of(*other) : decltype(parts){};
  std::wstring words;
  for (size_t i = 0; i < parts.size(); ++i)
    if (parts == others || parts[i] != others[i]) words += (words.empty() ? L"" : text(IDS_SEPARATOR)) + parts[i];
  return words;
}

UINT kind_of(const RuleChange& change) {
  if (!change.old_rule) return IDS_RULE_ADDED;
  return change.new_rule ? IDS_RULE_CHANGED : IDS_RULE_DELETED;
}

}  // namespace

ChangesList::ChangesList(HWND parent) : ListPane(parent, IDC_CHANGES_LIST, IDS_NO_CHANGES, changes_columns) {}

void ChangesList::show(std::vector<RuleChange> changes) {
  changes_ = std::move(changes);
  show_rows(changes_.size(), 0);
}

std::wstring ChangesList::cell(size_t row, size_t column) const {
  const RuleChange& change = changes_[row];
  switch (column_at(column).title) {
    case IDS_COLUMN_CHANGE_TIME:
      return format_time(change.time);
    case IDS_COLUMN_CHANGE_USER:
      return change.user;
    case IDS_COLUMN_CHANGE_KIND:
      return text(kind_of(change));
    case IDS_COLUMN_CHANGE_OLD:
      return format_differences(change.old_rule, change.new_rule);
    case IDS_COLUMN_CHANGE_NEW:
      return format_differences(change.new_rule, change.old_rule);
    default:
      return {};
  }
}

ChangesDialog::ChangesDialog(std::wstring rule_name, const std::vector<RuleChange>& changes)
    : ModalDialog(IDD_CHANGES), rule_name_(std::move(rule_name)), changes_(changes.rbegin(), changes.rend()) {}

void ChangesDialog::on_init() {
  list_.emplace(handle());
  place(*list_, IDC_DATES_AREA);
  if (!changes_.empty()) SetWindowTextW(list_->heading(), text(IDS_CHANGES_OF_RULE, {rule_name_}).c_str());
  list_->show(std::move(changes_));
}

LRESULT ChangesDialog::on_notify(NMHDR& notification) {
  return list_ && notification.idFrom == IDC_CHANGES_LIST ? list_->notify(notification) : 0;
}

}  // namespace workbench
