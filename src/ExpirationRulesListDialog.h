#pragma once

#include <span>
#include <string>
#include <vector>

#include "ListView.h"
#include "MovedControls.h"
#include "ResizableDialog.h"
#include "RuleRows.h"
#include "StorageBlock.h"
#include "resource.h"

namespace zd_expiration_rule_plugin {

/// The resizable modal dialog in which the user sees every stored expiration rule by name and adds, edits or deletes
/// rules. Each list item carries its rule's number as item data, the only link from the screen to the storage; 0 means
/// no rule. The list is rebuilt from the storage after every change.
class CExpirationRulesListDialog final : public CResizableDialogImpl<CExpirationRulesListDialog> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  /// `storage` must outlive the dialog.
  explicit CExpirationRulesListDialog(StorageBlock* storage) noexcept : storage_(storage) {}

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override;
  ~CExpirationRulesListDialog() override = default;

  /// Refills the list. A storage that fails midway leaves the rules read until then; the failure is reported.
  void update_expiration_rule_list();
  /// The name of a rule; empty when there is no such rule or it cannot be read, which is reported.
  _bstr_t expiration_rule_name(long rule_id) const;
  /// Whether a symbol source setting uses the rule; `users` receives the names of all that do. A failure midway is
  /// reported, and what was found until then counts.
  bool is_expiration_rule_uses(long rule_id, std::vector<std::wstring>& users);

 private:
  LRESULT OnInitDialog();
  void OnSize();
  BOOL OnCommand(WORD id, WORD notification);
  BOOL OnListNotify(const NMHDR& notification);

  void insert_name_column();
  void anchor_controls();
  void restore_placement();
  void show_rows(RuleRows& rows, unsigned refill);
  void update_buttons();
  void edit_rule(long rule_id);
  void edit_rule_at(int index);
  void select_rule(long rule_id);
  void scroll_item_into_view(int index);
  void fit_columns(std::span<const double> fractions);
  void try_to_delete_rule_impl();
  bool confirm_delete(long rule_id);
  void show_rule_in_use(const std::vector<std::wstring>& users);
  /// The button that the user pressed; 0 when the dialog is destroyed or ended before or meanwhile.
  int show_message(const std::wstring& text, UINT flags);

  StorageBlock* storage_;
  ui_helper::CListView list_;
  ui_helper::CMovedControls moved_controls_;
  unsigned refills_ = 0;  ///< how many refills have begun
};

}  // namespace zd_expiration_rule_plugin
