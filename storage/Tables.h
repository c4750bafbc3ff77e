#pragma once

#include <utility>

#include "SourceLocation.h"
#include "StorageBlock.h"

/// A table of the rule with this number, or of every rule for 0; empty or partly filled when the host fails to load it.
/// Throws a `_com_error` when the table or the filter cannot be created, or when the block has no rule service.
IkvTablePtr open_rules_table(const StorageBlock& storage, long rule_id);

/// A table of all symbol source settings, with the same failures. Fetches the block's entry 3 when it is empty.
IkvTablePtr open_symbol_source_settings_table(StorageBlock& storage);

/// Creates a free-standing table that declares the fields of a rule. `target` is released first. When the table cannot
/// be created, `target` stays empty and E_POINTER is thrown as a `_com_error`.
void create_rule_table(IkvTablePtr& target);

/// The moves of a walk over the rows of a table.
enum class RowMove { first, at_end, next };

/// The locations under which the moves of a walk are reported.
struct RowMoveLocations {
  SnagtrapUtil::SourceLocation first;
  SnagtrapUtil::SourceLocation at_end;
  SnagtrapUtil::SourceLocation next;

  const SnagtrapUtil::SourceLocation& of(RowMove move) const noexcept {
    if (move == RowMove::first) return first;
    return move == RowMove::at_end ? at_end : next;
  }
};

/// Walks the rows of a table: `row` is called for each current row and returns whether to go on; `check` sees the
/// HRESULT of every move and may throw. An end flag that the host leaves untouched keeps its value, which is set at
/// first; when it is left untouched twice in a row, the walk ends, so that a host which fails for good does not hang
/// it.
template <class Check, class Row>
void walk_rows(const IkvTablePtr& table, const Check& check, const Row& row) {
  constexpr long untouched = 0x454F4621;  // no host's flag
  long kept = 1;
  const auto at_end = [&] {
    long flag = untouched;
    check(table->IsEOF(&flag), RowMove::at_end);
    const long last = std::exchange(kept, flag == untouched ? 1 : flag);
    return (flag == untouched ? last : flag) != 0;
  };
  check(table->MoveFirst(), RowMove::first);
  while (!at_end()) {
    if (!row()) return;
    check(table->MoveNext(), RowMove::next);
  }
}

/// Calls `row` for each row of a table, whatever the moves return: the end flag alone ends the walk.
template <class Row>
void for_each_row(const IkvTablePtr& table, const Row& row) {
  walk_rows(
      table, [](HRESULT, RowMove) {},
      [&] {
        row();
        return true;
      });
}
