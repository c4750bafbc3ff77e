#include "DialogControls.h"

namespace workbench {

int add_item(HWND combo, const std::wstring& text) {
  return static_cast<int>(SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

int chosen_item(HWND combo) { return static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0)); }

void choose_item(HWND combo, int item) { SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(item), 0); }

}  // namespace workbench
