#pragma once

#include <windows.h>

namespace test_support {

inline void dispatch(const MSG& message) {
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

/// Dispatches a message as the loop of its dialog does, in which keys move the focus and press buttons.
inline void dispatch_as_dialog(const MSG& message) {
  MSG handed = message;
  HWND dialog = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
  if (!dialog || !IsDialogMessageW(dialog, &handed)) dispatch(message);
}

/// Handles the messages that are waiting for this thread.
inline void pump_messages(void (*handle)(const MSG& message) = &dispatch) {
  MSG message = {};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) handle(message);
}

}  // namespace test_support
