#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>

namespace workbench {

/// The text of one cell of a list view of this process.
inline std::wstring cell_text(HWND list, int row, int column) {
  wchar_t text[300] = L"";
  ListView_GetItemText(list, row, column, text, static_cast<int>(std::size(text)));
  return text;
}

}  // namespace workbench
