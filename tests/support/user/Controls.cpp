#include "Controls.h"

#include "Input.h"

namespace test_support {

std::wstring class_of(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, ARRAYSIZE(name));
  return name;
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

void choose(HWND combo, int index) {
  SetFocus(combo);
  press(VK_HOME);
  for (int step = 0; step < index; ++step) press(VK_DOWN);
}

}  // namespace test_support
