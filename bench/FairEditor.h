#pragma once

#include <windows.h>

#include "Dialog.h"
#include "HostRows.h"
#include "Owned.h"
#include "resource.h"

namespace bench {

/// The rule editor without the module: it reads the same rule from the same host and fills the same controls.
class FairEditor : public platform::CDialogImpl<FairEditor> {
 public:
  static constexpr int IDD = IDD_EDIT_EXPIRATION_RULE;

  /// `storage` must outlive the dialog.
  FairEditor(const StorageBlock& storage, long rule_id) : rule_(read_rule(storage, rule_id)) {}

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId) override;

 private:
  void initialise();
  void fill_combos() const;
  void enable_mode() const;
  void describe();
  void add(int combo, int string, long value) const;
  void select(int combo, long value) const;
  LRESULT send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(GetItem(id), message, wParam, lParam);
  }

  ExpirationRule rule_;
  base::Font bold_font_;
};

}  // namespace bench
