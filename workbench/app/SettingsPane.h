#pragma once

#include <set>
#include <string>
#include <vector>

#include "ListPane.h"
#include "RuleRecord.h"

namespace workbench {

/// The pane of symbol source settings, each with the rule that it names. A setting whose rule does not exist is
/// highlighted.
class SettingsPane final : public ListPane {
 public:
  explicit SettingsPane(HWND parent);

  /// The number of the setting in this row; 0 when there is none.
  long number_at(int row) const;

  /// Shows these settings, held against the names of these rules.
  void show(std::vector<StoredSetting> settings, const std::vector<StoredRule>& rules);

 protected:
  std::wstring cell(size_t row, size_t column) const override;
  std::optional<COLORREF> row_color(size_t row) const override;

 private:
  bool rule_is_missing(size_t row) const;

  std::vector<StoredSetting> settings_;
  std::set<std::wstring> rule_names_;
};

}  // namespace workbench
