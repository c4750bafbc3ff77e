#pragma once

#include "Dialog.h"
#include "StorageBlock.h"
#include "resource.h"

namespace zd_expiration_rule_plugin {

/// The modal dialog in which the user sees every stored expiration rule by name. Each item carries its rule's number as
/// item data.
class CExpirationRulesListDialog final : public platform::CDialogImpl<CExpirationRulesListDialog> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  /// `storage` must outlive the dialog.
  explicit CExpirationRulesListDialog(StorageBlock* storage) noexcept : storage_(storage) {}
  ~CExpirationRulesListDialog() override = default;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override;

 private:
  LRESULT OnInitDialog();
  void update_expiration_rule_list();
  void add_rule_row(const IkvTablePtr& rules);

  StorageBlock* storage_;
  platform::CWindow list_;
};

}  // namespace zd_expiration_rule_plugin
