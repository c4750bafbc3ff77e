#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ListPane.h"
#include "ModalDialog.h"
#include "RuleChange.h"

namespace workbench {

/// The list of what changes did to a rule.
class ChangesList final : public ListPane {
 public:
  explicit ChangesList(HWND parent);

  /// Shows these changes in this order.
  void show(std::vector<RuleChange> changes);

 protected:
  std::wstring cell(size_t row, size_t column) const override;

 private:
  std::vector<RuleChange> changes_;
};

/// The dialog that shows who changed a rule when, the newest change first.
class ChangesDialog final : public ModalDialog {
 public:
  /// `changes` are in the order of the store, the oldest first.
  ChangesDialog(std::wstring rule_name, const std::vector<RuleChange>& changes);

 protected:
  void on_init() override;
  void on_command(WORD, WORD) override {}
  LRESULT on_notify(NMHDR& notification) override;

 private:
  std::wstring rule_name_;
  std::vector<RuleChange> changes_;
  std::optional<ChangesList> list_;
};

}  // namespace workbench
