#include "RulesPane.h"

#include <algorithm>
#include <utility>

#include "RuleFormat.h"
#include "resource.h"

namespace workbench {

namespace {

enum RulesPaneColumn : size_t { number, name, offset, day, closed };

constexpr ListColumn rules_pane_columns[] = {
    {IDS_COLUMN_NUMBER, 44}, {IDS_COLUMN_NAME, 180},  {IDS_COLUMN_OFFSET, 116},
    {IDS_COLUMN_DAY, 132},   {IDS_COLUMN_CLOSED, 92},
};

}  // namespace

RulesPane::RulesPane(HWND parent) : ListPane(parent, IDC_RULES, IDS_RULES_PANE, rules_pane_columns) {}

void RulesPane::show(std::vector<StoredRule> rules) {
  const int row = focused_row();
  const long number = number_at(row);
  rules_ = std::move(rules);
  const auto found = std::ranges::find(rules_, number, &StoredRule::number);
  show_rows(rules_.size(), found == rules_.end() ? row : static_cast<int>(found - rules_.begin()));
}

long RulesPane::number_at(int row) const {
  return row >= 0 && static_cast<size_t>(row) < rules_.size() ? rules_[static_cast<size_t>(row)].number : 0;
}

std::wstring RulesPane::cell(size_t row, size_t column) const {
  const StoredRule& stored = rules_[row];
  switch (column) {
    case number:
      return std::to_wstring(stored.number);
    case name:
      return stored.rule.name;
    case offset:
      return format_offset(stored.rule);
    case day:
      return format_rule_day(stored.rule);
    case closed:
      return format_move(stored.rule);
    default:
      return {};
  }
}

}  // namespace workbench
