#include "TableRows.h"

#include <algorithm>

#include "RuleRecord.h"

namespace workbench {

namespace {

bool is_text(long field) { return field == KVFIELD_RULE_NAME || field == KVFIELD_SETTING_NAME; }

bool is_number(long field) {
  return field == KVFIELD_RULE_ID || std::ranges::find(rule_columns, field, &RuleColumn::field) != rule_columns.end();
}

}  // namespace

bool TableRows::declare(long field) {
  if (find(field) >= 0) return true;
  if (count_ > 0) return false;
  if (is_text(field))
    columns_.push_back({field, Texts{}});
  else if (is_number(field))
    columns_.push_back({field, Numbers{}});
  else
    return false;
  return true;
}

std::ptrdiff_t TableRows::find(long field) const noexcept {
  const auto found = std::ranges::find(columns_, field, &Column::field);
  return found == columns_.end() ? -1 : found - columns_.begin();
}

void TableRows::grow_columns(std::size_t count) {
  for (Column& column : columns_) std::visit([&](auto& values) { values.resize(count); }, column.values);
}

void TableRows::resize(std::size_t count) {
  grow_columns(count);
  count_ = count;
  current_ = 0;
}

void TableRows::append() {
  // If one column cannot grow, those that have grown keep a surplus value: the count says how many rows there are.
  grow_columns(count_ + 1);
  ++count_;
}

}  // namespace workbench
