#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace test_support {

/// Runs `open`, which runs a modal dialog or a message box on this thread, and calls `act` with the dialog as soon as
/// it is in the foreground, from inside its message loop. A dialog that `act` leaves open is ended with IDCANCEL and
/// fails the test, as does an `open` that opens none. `act` may call this function for a dialog over its own.
void with_dialog(const std::function<void()>& open, const std::function<void(HWND dialog)>& act);

/// What a message box shows.
struct MessageBoxContent {
  std::wstring caption;
  std::wstring text;
  int buttons = 0;
  HICON icon = nullptr;  ///< one of the system's shared icons
};

MessageBoxContent read_message_box(HWND box);

/// Runs `open`, reads the message box that it opens and closes that with the Enter key.
MessageBoxContent with_message_box(const std::function<void()>& open);

}  // namespace test_support
