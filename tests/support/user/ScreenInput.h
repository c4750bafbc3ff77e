#pragma once

#include <windows.h>

#include <string>

namespace test_support::screen {

/// Real input, as from the keyboard and the mouse: the system decides which window gets it, so the intended window must
/// be in the foreground of this thread. Each function returns when everything that the input caused has been handled,
/// also when it opened a modal dialog which a `DialogDriver` has closed.

/// Types a text into the control that has the focus: ASCII by its keys, other units as an input method gives them.
void type(const std::wstring& text);

/// Presses a key, with another one held down or none.
void press(WORD virtual_key, WORD held_down = 0);

/// Clicks with the left button in the middle of a window.
void click(HWND window);
/// Clicks `times` times at a point of a window, in its client coordinates.
void click(HWND window, POINT point, int times = 1);

/// Handles the messages of this thread until all input that was sent so far has been handled.
void settle();

}  // namespace test_support::screen
