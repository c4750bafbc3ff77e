#pragma once

#include <windows.h>

#include <functional>
#include <map>

namespace faults_test {

/// Visits every modal dialog and message box of this thread from inside its own loop, before it comes to the screen,
/// and again after each visit until it is closed. So nothing waits for a dialog that did not open or did not close as
/// it should have. A visit may open further dialogs: those are visited inside it. One lives at a time.
class DialogVisitor {
 public:
  /// `number` counts the visits of one dialog from 1.
  using Visit = std::function<void(HWND dialog, int number)>;

  explicit DialogVisitor(Visit visit);
  ~DialogVisitor();
  DialogVisitor(const DialogVisitor&) = delete;
  DialogVisitor& operator=(const DialogVisitor&) = delete;

 private:
  static LRESULT CALLBACK see_window(int code, WPARAM window, LPARAM creation);
  static LRESULT CALLBACK receive(HWND window, UINT message, WPARAM dialog, LPARAM serial);
  void expect_dialog(HWND dialog);
  void call_on(HWND dialog, int serial);

  struct Known {
    int serial;  ///< tells a dialog from an earlier one with the same handle
    int visits;
  };

  Visit visit_;
  HWND messages_;
  HHOOK hook_;
  std::map<HWND, Known> known_;
  int dialogs_ = 0;
};

}  // namespace faults_test
