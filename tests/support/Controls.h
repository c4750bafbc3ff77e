#pragma once

#include <windows.h>

#include <set>
#include <string>
#include <vector>

namespace test_support {

std::wstring item_text(HWND dialog, int item);
std::wstring class_of(HWND window);

/// The rectangle of a window on the screen, of its client area, and of a child in its parent's client coordinates.
RECT window_rect(HWND window);
RECT client_rect(HWND window);
RECT rect_of(HWND child);

/// Every top-level window of this thread, visible or not.
std::set<HWND> windows_of_this_thread();

/// The texts and the data of a combo box's items, in their order.
std::vector<std::wstring> combo_texts(HWND combo);
std::vector<LRESULT> combo_data(HWND combo);

/// What a message box shows.
struct MessageBoxContent {
  std::wstring caption;
  std::wstring text;
  int buttons = 0;
  HICON icon = nullptr;  ///< one of the system's shared icons
};

MessageBoxContent read_message_box(HWND box);

/// Clicks a button; one that is disabled does nothing.
void click(HWND dialog, int button);

/// Sends a dialog what a click on a button sends it, whether or not the button is there and enabled.
void send_click(HWND dialog, int button);

/// Closes a message box by its first button.
void close_message_box(HWND box);

/// Types a key into the focused control, by way of the dialog's own keyboard handling.
void press_key(HWND dialog, WPARAM virtual_key);

/// Types Alt and a letter, lower case, as a mnemonic.
void press_mnemonic(HWND dialog, wchar_t letter);

}  // namespace test_support
