#pragma once

#include <functional>

#include "DatesDialog.h"
#include "RuleRecord.h"

namespace workbench {

/// The rules that were found, in words.
class FoundRuleList final : public ListPane {
 public:
  explicit FoundRuleList(HWND parent);

  void show(schedule::FoundRules found);
  /// The rule that is selected; null when there is none.
  const schedule::FoundRule* selected() const;

 protected:
  std::wstring cell(size_t row, size_t column) const override;

 private:
  schedule::FoundRules found_;
};

/// The dialog that finds the rules that give pasted or imported dates, and stores one of them.
class FindDialog final : public DatesDialog {
 public:
  /// Stores a rule. Returns a message if it could not, and the dialog stays open.
  using Store = std::function<std::wstring(const Rule& rule)>;

  FindDialog(const ScheduleData& data, const FileDialogs& files, Store store);

 protected:
  void on_init() override;
  void on_command(WORD id, WORD code) override;
  LRESULT on_notify(NMHDR& notification) override;

 private:
  void import();
  void find();
  void show(const schedule::FoundRules& found);
  void store_selected();

  Store store_;
  std::optional<FoundRuleList> rules_;
};

}  // namespace workbench
