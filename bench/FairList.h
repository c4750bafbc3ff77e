#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "Dialog.h"
#include "HandLayout.h"
#include "HostRows.h"
#include "resource.h"

namespace bench {

/// The rule list without the module: it reads the same rules from the same host, shows itself where the module's list
/// would, in its initialisation as that must, and lays itself out by hand. Rows are put in from the last to the first,
/// so that every item belongs at the top.
class FairList : public platform::CDialogImpl<FairList> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  /// `storage` must outlive the dialog. `settings_path` is the key below which the module keeps its placement.
  FairList(const StorageBlock& storage, std::wstring settings_path)
      : storage_(storage), settings_path_(std::move(settings_path)) {}

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId) override;

  void fill();

 private:
  void initialise();
  void insert_column() const;
  void fit_column() const;
  void show() const;
  void update_buttons() const;
  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(list_, message, wParam, lParam);
  }

  const StorageBlock& storage_;
  std::wstring settings_path_;
  HWND list_ = nullptr;
  HandLayout layout_;
};

}  // namespace bench
