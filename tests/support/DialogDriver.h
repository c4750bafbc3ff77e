#pragma once

#include <windows.h>

#include <functional>

#include "Controls.h"

namespace test_support {

/// Hands each modal dialog and message box that this thread opens to a function of the test, on this thread and from
/// inside the dialog's own message loop. Lives around the call that opens the dialog. The drivers of one thread nest: a
/// dialog goes to the driver that was created last. A dialog that stays open although nothing happens to it any more is
/// closed and fails the test, so that no test waits for a dialog that did not close as it should have.
class DialogDriver {
 public:
  using Action = std::function<void(HWND dialog)>;
  /// `number` counts the visits of one dialog from 1.
  using Visit = std::function<void(HWND dialog, int number)>;
  /// When a dialog is visited first: as soon as its loop runs, or when it is on the screen.
  enum class When { created, shown };

  /// Visits each dialog once, when it is shown.
  explicit DialogDriver(Action action);
  /// Visits each dialog again after each visit until it is closed.
  DialogDriver(When when, Visit visit);
  ~DialogDriver();
  DialogDriver(const DialogDriver&) = delete;
  DialogDriver& operator=(const DialogDriver&) = delete;

  /// How many dialogs were visited.
  int dialogs() const { return dialogs_; }

 private:
  static LRESULT CALLBACK see_window(int code, WPARAM window, LPARAM creation);
  static LRESULT CALLBACK receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void schedule(HWND dialog, int number) const;
  void call_on(HWND dialog, int number);

  inline static DialogDriver* current_ = nullptr;

  Visit visit_;
  When when_;
  DialogDriver* outer_;
  HWND messages_;
  HHOOK hook_;
  int dialogs_ = 0;
};

/// Runs `open`, which opens one modal dialog or message box, and calls `act` with it when it is shown. Fails the test
/// when no dialog opens, when `act` leaves it open, and when another dialog opens that no driver inside `act` waits
/// for; that one is named and closed at once.
void with_dialog(const std::function<void()>& open, const DialogDriver::Action& act);

/// Runs `open`, which opens a message box, and closes that by `button`; its only button by default.
MessageBoxContent with_message_box(const std::function<void()>& open, int button = 0);

}  // namespace test_support
