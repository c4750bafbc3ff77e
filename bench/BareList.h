#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

#include "Dialog.h"
#include "resource.h"

namespace bench {

/// The rule list's template with nothing behind it but a list view that is filled as cheaply as the system allows: with
/// its painting held back, and from the last name to the first, so that every item belongs at the top.
class BareList : public platform::CDialogImpl<BareList> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  explicit BareList(std::vector<std::wstring> names);

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId) override;

  void fill();

 private:
  void insert_column();

  std::vector<std::wstring> names_;  ///< from the last to the first
  platform::CWindow list_;
};

/// What the list view needs of the system.
void prepare_controls();

}  // namespace bench
