#include "WaitBox.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include "MainWindow.h"
#include "ModulePath.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr ULONGLONG paint_period_ms = 100;

BOOL CALLBACK find_frame(HWND window, LPARAM found) noexcept {
  std::array<wchar_t, 64> name{};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  if (std::wstring_view(name.data()) != main_window_class) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

HWND main_window_of_this_thread() noexcept {
  HWND window = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), &find_frame, reinterpret_cast<LPARAM>(&window));
  return window;
}

}  // namespace

WaitBox::WaitBox(std::wstring message) : frame_(main_window_of_this_thread()), message_(std::move(message)) {}

WaitBox::~WaitBox() {
  if (!box_.joinable()) return;
  SetEvent(closing_.get());
  box_.join();
  // The system gives a thread what was posted before what was typed. Without a frame there is no plug-in.
  const DWORD now = GetTickCount();
  if (frame_)
    PostMessageW(frame_, drop_input_message, now, 0);
  else
    drop_input(now);
}

bool WaitBox::wait(HANDLE event, std::chrono::milliseconds at_most) {
  const std::array<HANDLE, 2> handles{event, cancelled_.get()};
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(at_most.count());
  for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
    const auto slice = static_cast<DWORD>(std::min(end - now, paint_period_ms));
    const DWORD result = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE, slice);
    if (result == WAIT_OBJECT_0) return true;
    if (result == WAIT_OBJECT_0 + 1) return false;
    if (result == WAIT_FAILED) return true;
    update();
  }
  return true;
}

bool WaitBox::go_on() {
  if (GetTickCount64() - updated_ >= paint_period_ms) update();
  return WaitForSingleObject(cancelled_.get(), 0) != WAIT_OBJECT_0;
}

void WaitBox::update() {
  updated_ = GetTickCount64();
  if (!box_.joinable() && updated_ - began_ >= delay_ms) show();
  if (frame_) RedrawWindow(frame_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void WaitBox::show() {
  // Otherwise the system would replace the windows of a thread that does not fetch messages with pictures of them.
  DisableProcessWindowsGhosting();
  box_ = std::thread([this] { run_box(); });
}

/// A failure is ignored, because the call ends without the box too.
void WaitBox::run_box() noexcept {
  HWND box = CreateDialogIndirectParamW(base::module_instance(), find_dialog(IDD_WAIT), nullptr, &procedure,
                                        reinterpret_cast<LPARAM>(this));
  if (!box) return;
  const HANDLE closing = closing_.get();
  while (MsgWaitForMultipleObjects(1, &closing, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
      if (!IsDialogMessageW(box, &message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
  }
  DestroyWindow(box);
}

/// Puts the box over the middle of the frame.
void WaitBox::fill(HWND window) noexcept {
  SetDlgItemTextW(window, IDC_WAIT_MESSAGE, message_.c_str());
  RECT frame{};
  RECT box{};
  if (!GetWindowRect(frame_ ? frame_ : GetDesktopWindow(), &frame) || !GetWindowRect(window, &box)) return;
  SetWindowPos(window, HWND_TOPMOST, (frame.left + frame.right - (box.right - box.left)) / 2,
               (frame.top + frame.bottom - (box.bottom - box.top)) / 2, 0, 0, SWP_NOSIZE);
}

schedule::Progress wait_for_file(const std::wstring& store) {
  const auto box = std::make_shared<WaitBox>(text(IDS_WAITING_FOR_FILE, {store}));
  return [box](std::size_t, std::size_t) { return box->go_on(); };
}

void drop_input(DWORD until) noexcept {
  MSG message{};
  const auto next = [&](UINT remove) { return PeekMessageW(&message, nullptr, 0, 0, remove | PM_QS_INPUT) != FALSE; };
  while (next(PM_NOREMOVE) && static_cast<LONG>(message.time - until) <= 0 && next(PM_REMOVE)) continue;
}

INT_PTR CALLBACK WaitBox::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lparam);
    reinterpret_cast<WaitBox*>(lparam)->fill(window);
    return TRUE;
  }
  auto* box = reinterpret_cast<WaitBox*>(GetWindowLongPtrW(window, DWLP_USER));
  if (message != WM_COMMAND || LOWORD(wparam) != IDCANCEL || !box) return FALSE;
  EnableWindow(GetDlgItem(window, IDCANCEL), FALSE);
  SetEvent(box->cancelled_.get());
  return TRUE;
}

}  // namespace workbench
