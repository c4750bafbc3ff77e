#include "Controls.h"

#include <utility>

#include "WindowText.h"

namespace test_support {
namespace {

BOOL CALLBACK collect(HWND window, LPARAM windows) {
  reinterpret_cast<std::set<HWND>*>(windows)->insert(window);
  return TRUE;
}

BOOL CALLBACK read_part(HWND part, LPARAM lParam) {
  auto& content = *reinterpret_cast<MessageBoxContent*>(lParam);
  const std::wstring kind = class_of(part);
  if (kind == L"Button") ++content.buttons;
  if (kind != L"Static" && kind != L"Edit") return TRUE;
  const auto icon = reinterpret_cast<HICON>(SendMessageW(part, STM_GETICON, 0, 0));
  if (kind == L"Static" && icon) {
    content.icon = icon;
  } else if (GetWindowLongW(part, GWL_STYLE) & WS_VISIBLE) {
    content.text += base::window_text(part);
  }
  return TRUE;
}

HWND focus_in(HWND dialog) {
  const HWND focus = GetFocus();
  return focus && IsChild(dialog, focus) ? focus : dialog;
}

}  // namespace

std::wstring item_text(HWND dialog, int item) { return base::window_text(GetDlgItem(dialog, item)); }

std::wstring class_of(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, ARRAYSIZE(name));
  return name;
}

RECT window_rect(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  return rect;
}

RECT client_rect(HWND window) {
  RECT rect = {};
  GetClientRect(window, &rect);
  return rect;
}

RECT rect_of(HWND child) {
  RECT rect = window_rect(child);
  MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

std::set<HWND> windows_of_this_thread() {
  std::set<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

std::vector<std::wstring> combo_texts(HWND combo) {
  std::vector<std::wstring> texts;
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT index = 0; index < count; ++index) {
    const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    texts.push_back(std::move(text));
  }
  return texts;
}

std::vector<LRESULT> combo_data(HWND combo) {
  std::vector<LRESULT> data;
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT index = 0; index < count; ++index) {
    data.push_back(SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
  }
  return data;
}

MessageBoxContent read_message_box(HWND box) {
  MessageBoxContent content;
  content.caption = base::window_text(box);
  EnumChildWindows(box, read_part, reinterpret_cast<LPARAM>(&content));
  return content;
}

void click(HWND dialog, int button) { SendDlgItemMessageW(dialog, button, BM_CLICK, 0, 0); }

void send_click(HWND dialog, int button) {
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

void close_message_box(HWND box) { send_click(box, GetDlgCtrlID(FindWindowExW(box, nullptr, L"Button", nullptr))); }

void press_key(HWND dialog, WPARAM virtual_key) {
  PostMessageW(focus_in(dialog), WM_KEYDOWN, virtual_key, 1);
  PostMessageW(focus_in(dialog), WM_KEYUP, virtual_key, static_cast<LPARAM>(0xC0000001));
}

void press_mnemonic(HWND dialog, wchar_t letter) {
  constexpr LPARAM alt_is_down = 1 << 29;
  PostMessageW(focus_in(dialog), WM_SYSCHAR, letter, alt_is_down | 1);
}

}  // namespace test_support
