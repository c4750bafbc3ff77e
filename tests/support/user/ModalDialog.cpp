#include "ModalDialog.h"

#include <gtest/gtest.h>

#include <set>

#include "Controls.h"
#include "DialogDriver.h"
#include "Input.h"

namespace test_support {
namespace {

constexpr UINT interval_ms = 10;

bool is_dialog_on_screen(HWND window) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, ARRAYSIZE(name));
  return std::wstring(name) == L"#32770" && IsWindowVisible(window);
}

std::set<HWND> dialogs_on_screen() {
  std::set<HWND> dialogs = windows_of_this_thread();
  std::erase_if(dialogs, [](HWND window) { return !is_dialog_on_screen(window); });
  return dialogs;
}

/// Waits, by a timer that every message loop of the thread serves, for a dialog that was not there before.
class ModalDialogWaiter {
 public:
  explicit ModalDialogWaiter(const std::function<void(HWND)>& act)
      : act_(act), before_(dialogs_on_screen()), outer_(current_) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, interval_ms, look);
  }
  ~ModalDialogWaiter() {
    stop();
    current_ = outer_;
  }
  ModalDialogWaiter(const ModalDialogWaiter&) = delete;
  ModalDialogWaiter& operator=(const ModalDialogWaiter&) = delete;

  bool took_place() const { return took_place_; }

 private:
  static void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD) {
    if (current_ && current_->timer_ == timer) current_->look_for_dialog();
  }

  void look_for_dialog() {
    for (HWND dialog : dialogs_on_screen()) {
      if (before_.count(dialog) != 0) continue;
      if (GetForegroundWindow() == dialog) {
        meet(dialog);
      } else {
        SetForegroundWindow(dialog);
      }
      return;
    }
  }

  void meet(HWND dialog) {
    stop();
    took_place_ = true;
    act_(dialog);
    if (!IsWindowVisible(dialog)) return;
    ADD_FAILURE() << "a dialog was left open";
    EndDialog(dialog, IDCANCEL);
  }

  void stop() {
    if (timer_) KillTimer(nullptr, timer_);
    timer_ = 0;
  }

  inline static ModalDialogWaiter* current_ = nullptr;

  const std::function<void(HWND)>& act_;
  std::set<HWND> before_;
  ModalDialogWaiter* outer_;
  UINT_PTR timer_ = 0;
  bool took_place_ = false;
};

BOOL CALLBACK read_part(HWND part, LPARAM lParam) {
  auto& content = *reinterpret_cast<MessageBoxContent*>(lParam);
  const std::wstring kind = class_of(part);
  if (kind == L"Button") ++content.buttons;
  if (kind != L"Static" && kind != L"Edit") return TRUE;
  const auto icon = reinterpret_cast<HICON>(SendMessageW(part, STM_GETICON, 0, 0));
  if (kind == L"Static" && icon) {
    content.icon = icon;
  } else if (IsWindowVisible(part)) {
    content.text += window_text(part);
  }
  return TRUE;
}

}  // namespace

void with_dialog(const std::function<void()>& open, const std::function<void(HWND dialog)>& act) {
  const ModalDialogWaiter meeting(act);
  open();
  EXPECT_TRUE(meeting.took_place()) << "no dialog was opened";
}

MessageBoxContent read_message_box(HWND box) {
  MessageBoxContent content;
  content.caption = window_text(box);
  EnumChildWindows(box, read_part, reinterpret_cast<LPARAM>(&content));
  return content;
}

MessageBoxContent with_message_box(const std::function<void()>& open) {
  MessageBoxContent content;
  with_dialog(open, [&](HWND box) {
    content = read_message_box(box);
    press(VK_RETURN);
  });
  return content;
}

}  // namespace test_support
