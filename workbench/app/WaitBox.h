#pragma once

#include <windows.h>

#include <string>
#include <thread>

#include "Owned.h"
#include "Progress.h"
#include "ServerRuleStore.h"

namespace workbench {

/// Waits for a store while a plug-in may be in the middle of a call. The frame window paints itself, and after a
/// second a box says what is waited for and lets the user give up. No message reaches a window of the waiting thread
/// but the paint messages of the frame and its children; the box belongs to a thread of its own. What the user typed
/// and clicked until the box is closed is dropped, as windows under a modal dialog drop it; without the box it waits.
/// It is dropped when this thread fetches messages next, because to look at the input is to receive what other threads
/// have sent, which must not reach a plug-in in the middle of its call.
class WaitBox final : public ServerWait {
 public:
  /// How long a call takes before the box is shown.
  inline static ULONGLONG delay_ms = 1000;

  /// `message` says what is waited for. The frame is the main window of this thread, if there is one yet.
  explicit WaitBox(std::wstring message);
  ~WaitBox() override;

  bool wait(HANDLE event, std::chrono::milliseconds at_most) override;

  /// Called often by work on this thread. False: the user gave up.
  bool go_on();

 private:
  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  void update();
  void show();
  void run_box() noexcept;
  void fill(HWND window) noexcept;

  HWND frame_;
  std::wstring message_;
  ULONGLONG began_ = GetTickCount64();
  ULONGLONG updated_ = 0;
  base::KernelHandle cancelled_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  base::KernelHandle closing_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  std::thread box_;
};

/// The progress of a call of a store in a file, which another program may hold: it waits with a `WaitBox` that names
/// the store. The box is closed when the last copy of the function is destroyed.
schedule::Progress wait_for_file(const std::wstring& store);

/// Drops what the user has typed and clicked on this thread until this time, as `GetTickCount` counts it. What other
/// threads post is left alone, and what they send is received.
void drop_input(DWORD until) noexcept;

}  // namespace workbench
