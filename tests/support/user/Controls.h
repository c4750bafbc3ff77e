#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace test_support {

std::wstring class_of(HWND window);

/// The texts and the data of a combo box's items, in their order.
std::vector<std::wstring> combo_texts(HWND combo);
std::vector<LRESULT> combo_data(HWND combo);

/// Chooses an item of a drop-down list with the keyboard.
void choose(HWND combo, int index);

}  // namespace test_support
