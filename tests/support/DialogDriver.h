#pragma once

#include <windows.h>

#include <functional>
#include <set>
#include <string>

namespace test_support {

/// Answers modal dialogs of this thread from inside their own message loops: every dialog that appears is handed to
/// `action` once, on this thread, as soon as it is visible. Lives around the call that opens the dialog. One lives at a
/// time.
class DialogDriver {
 public:
  using Action = std::function<void(HWND dialog)>;

  explicit DialogDriver(Action action);
  ~DialogDriver();
  DialogDriver(const DialogDriver&) = delete;
  DialogDriver& operator=(const DialogDriver&) = delete;

  /// How many dialogs have appeared.
  int dialogs() const { return dialogs_; }

 private:
  static void CALLBACK look(HWND, UINT, UINT_PTR, DWORD);
  void handle(HWND dialog);

  Action action_;
  HWND last_ = nullptr;
  int dialogs_ = 0;
  UINT_PTR timer_;
};

/// Presses a button as a click does.
void click(HWND dialog, int button);

/// Types a key into the focused control, by way of the dialog's own keyboard handling.
void press_key(HWND dialog, WPARAM virtual_key);

/// Types Alt and a letter, lower case, as a mnemonic.
void press_mnemonic(HWND dialog, wchar_t letter);

/// Every top-level window of this thread, visible or not.
std::set<HWND> windows_of_this_thread();

std::wstring window_text(HWND window);
std::wstring item_text(HWND dialog, int item);

}  // namespace test_support
