#pragma once

#include <vector>

#include "ListPane.h"
#include "RuleRecord.h"

namespace workbench {

/// The pane of stored rules.
class RulesPane final : public ListPane {
 public:
  explicit RulesPane(HWND parent);

  /// Shows these rules. The selection stays on the rule with the same number, or moves to its neighbour
  /// when that is deleted.
  void show(std::vector<StoredRule> rules);

  /// The number of the rule in this row; 0 when there is none.
  long number_at(int row) const;

 protected:
  std::wstring cell(size_t row, size_t column) const override;

 private:
  std::vector<StoredRule> rules_;
};

}  // namespace workbench
