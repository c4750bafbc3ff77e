#include "Input.h"

#include "MessagePump.h"

namespace test_support {
namespace {

void hand_to_focus(UINT message, WPARAM wParam, LPARAM lParam) {
  MSG handed = {};
  handed.hwnd = GetFocus();
  handed.message = message;
  handed.wParam = wParam;
  handed.lParam = lParam;
  dispatch_as_dialog(handed);
  settle();
}

}  // namespace

void type(const std::wstring& text) {
  for (const wchar_t unit : text) hand_to_focus(WM_CHAR, unit, 1);
}

void press(WORD virtual_key) {
  constexpr auto released = static_cast<LPARAM>(0xC0000001);
  hand_to_focus(WM_KEYDOWN, virtual_key, 1);
  hand_to_focus(WM_KEYUP, virtual_key, released);
}

void click_at(HWND window, POINT point) {
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y));
  settle();
}

void settle() { pump_messages(&dispatch_as_dialog); }

}  // namespace test_support
