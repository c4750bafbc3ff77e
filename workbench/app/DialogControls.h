#pragma once

#include <windows.h>

#include <string>

namespace workbench {

/// Adds an item to a combo box and returns its index.
int add_item(HWND combo, const std::wstring& text);

/// The index of the item that is chosen in a combo box; -1 when there is none.
int chosen_item(HWND combo);
void choose_item(HWND combo, int item);

}  // namespace workbench
