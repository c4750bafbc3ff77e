#include "ScreenInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "MessagePump.h"

namespace test_support::screen {
namespace {

/// A key that is sent after other input and marks its end in the queue. No keyboard has it, and no window receives it.
/// Each one carries a number.
constexpr WORD marker_key = VK_F24;
constexpr ULONGLONG timeout_ms = 30'000;

LPARAM last_sent_marker = 0;
LPARAM last_passed_marker = 0;

bool is_marker(const MSG& message) {
  const bool is_key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  return is_key && message.wParam == marker_key;
}

/// Sees each message that any loop of the thread takes from the queue.
LRESULT CALLBACK watch_for_marker(int code, WPARAM removed, LPARAM lParam) {
  auto& message = *reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && is_marker(message)) {
    if (removed == PM_REMOVE) last_passed_marker = std::max(last_passed_marker, GetMessageExtraInfo());
    message.message = WM_NULL;
  }
  return CallNextHookEx(nullptr, code, removed, lParam);
}

INPUT key_event(WORD virtual_key, WORD unit, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtual_key;
  input.ki.wScan = unit;
  input.ki.dwFlags = flags;
  return input;
}

void add_key(std::vector<INPUT>& inputs, WORD virtual_key, WORD held_down) {
  if (held_down) inputs.push_back(key_event(held_down, 0, 0));
  inputs.push_back(key_event(virtual_key, 0, 0));
  inputs.push_back(key_event(virtual_key, 0, KEYEVENTF_KEYUP));
  if (held_down) inputs.push_back(key_event(held_down, 0, KEYEVENTF_KEYUP));
}

void add_unit(std::vector<INPUT>& inputs, wchar_t unit) {
  const SHORT key = unit < 0x80 ? VkKeyScanW(unit) : SHORT{-1};
  if (key != -1) {
    add_key(inputs, LOBYTE(key), HIBYTE(key) & 1 ? VK_SHIFT : 0);
  } else {
    inputs.push_back(key_event(0, unit, KEYEVENTF_UNICODE));
    inputs.push_back(key_event(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
  }
}

BOOL CALLBACK find_usable_window(HWND window, LPARAM found) {
  const bool is_usable = IsWindowVisible(window) && IsWindowEnabled(window);
  if (is_usable) *reinterpret_cast<HWND*>(found) = window;
  return !is_usable;
}

bool is_in_front() { return GetWindowThreadProcessId(GetForegroundWindow(), nullptr) == GetCurrentThreadId(); }

/// If another program has taken the foreground, the input would be lost; a user would click the window then.
void come_to_front() {
  HWND topmost = nullptr;
  if (!is_in_front()) EnumThreadWindows(GetCurrentThreadId(), find_usable_window, reinterpret_cast<LPARAM>(&topmost));
  if (topmost) SetForegroundWindow(topmost);
}

void send(std::vector<INPUT> inputs) {
  come_to_front();
  const auto count = static_cast<UINT>(inputs.size());
  EXPECT_EQ(count, SendInput(count, inputs.data(), sizeof(INPUT))) << "the input was refused";
}

LONG in_parts_of_screen(LONG pixels, int metric) {
  const LONG size = GetSystemMetrics(metric);
  return (pixels * 0x10000 + size - 1) / size;
}

/// Says where it happens, as the screen may still be reporting where the mouse was before, and when.
INPUT mouse_event(DWORD flags, POINT point, DWORD time) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = in_parts_of_screen(point.x, SM_CXSCREEN);
  input.mi.dy = in_parts_of_screen(point.y, SM_CYSCREEN);
  input.mi.dwFlags = flags | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  input.mi.time = time;
  return input;
}

void send_marker(LPARAM number) {
  INPUT marker = key_event(marker_key, 0, KEYEVENTF_KEYUP);
  marker.ki.dwExtraInfo = static_cast<ULONG_PTR>(number);
  send({marker});
}

void handle_one_message() {
  MSG message = {};
  if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    return;
  }
  dispatch_as_dialog(message);
}

}  // namespace

void type(const std::wstring& text) {
  std::vector<INPUT> inputs;
  for (const wchar_t unit : text) add_unit(inputs, unit);
  send(std::move(inputs));
  settle();
}

void press(WORD virtual_key, WORD held_down) {
  std::vector<INPUT> inputs;
  add_key(inputs, virtual_key, held_down);
  send(std::move(inputs));
  settle();
}

void click(HWND window) {
  RECT area = {};
  GetClientRect(window, &area);
  click(window, {area.right / 2, area.bottom / 2});
}

void click(HWND window, POINT point, int times) {
  ClientToScreen(window, &point);
  EXPECT_TRUE(SetCursorPos(point.x, point.y));
  // However slowly they are handled, clicks of one time are a double click.
  const DWORD now = GetTickCount();
  for (int count = 0; count < times; ++count) {
    send({mouse_event(MOUSEEVENTF_LEFTDOWN, point, now), mouse_event(MOUSEEVENTF_LEFTUP, point, now)});
    settle();
  }
}

void settle() {
  HWND target = GetForegroundWindow();
  HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, watch_for_marker, nullptr, GetCurrentThreadId());
  const LPARAM marker = ++last_sent_marker;
  send_marker(marker);
  const ULONGLONG end = GetTickCount64() + timeout_ms;
  // A marker behind the input that closes a window may find no window to go to.
  const auto is_done = [&] { return last_passed_marker >= marker || !IsWindowVisible(target); };
  while (!is_done() && GetTickCount64() < end) handle_one_message();
  UnhookWindowsHookEx(hook);
  EXPECT_TRUE(is_done()) << "the input did not reach this thread, " << (is_in_front() ? "which" : "but another")
                         << " is in front";
}

}  // namespace test_support::screen
