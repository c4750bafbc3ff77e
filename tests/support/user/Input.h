#pragma once

#include <windows.h>

#include <string>

namespace test_support {

/// Input as messages to the control that has the focus, handed on as the loop of its dialog does. It needs neither the
/// foreground nor a screen. Each function returns when everything that it caused has been handled.

/// Types a text.
void type(const std::wstring& text);

/// Presses and releases a key.
void press(WORD virtual_key);

/// Clicks with the left button at a point of a window, in its client coordinates.
void click_at(HWND window, POINT point);

/// Handles the messages that are waiting for this thread.
void settle();

}  // namespace test_support
