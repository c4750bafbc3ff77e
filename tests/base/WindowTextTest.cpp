#include <gtest/gtest.h>

#include <algorithm>

#include "OwnedWindow.h"
#include "WindowText.h"

namespace base {
namespace {

/// The text that a window of the class below returns, and what it says about its length.
struct ReturnedText {
  std::wstring text;
  LRESULT length = 0;
};
ReturnedText returned;

LRESULT CALLBACK text_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETTEXTLENGTH) return returned.length;
  if (message == WM_GETTEXT) {
    auto* buffer = reinterpret_cast<wchar_t*>(lParam);
    const std::size_t copied = std::min<std::size_t>(returned.text.size(), wParam - 1);
    buffer[returned.text.copy(buffer, copied)] = 0;
    return static_cast<LRESULT>(copied);
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

HWND make(const wchar_t* window_class) {
  return CreateWindowExW(0, window_class, L"", WS_POPUP, 10, 20, 120, 40, nullptr, nullptr, GetModuleHandleW(nullptr),
                         nullptr);
}

TEST(WindowText, IsReadWhateverItsLength) {
  const test_support::OwnedWindow window(make(L"EDIT"));
  for (const std::size_t length : {0u, 1u, 255u, 256u, 29999u}) {
    const std::wstring text(length, L'\u89c4');
    SetWindowTextW(window.get(), text.c_str());
    EXPECT_EQ(window_text(window.get()), text);
  }
}

TEST(WindowText, CountsAsItIsCopiedWhateverItsLengthWasSaidToBe) {
  WNDCLASSW window_class = {};
  window_class.lpfnWndProc = text_procedure;
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = L"zd.Answering";
  RegisterClassW(&window_class);
  const test_support::OwnedWindow window(make(L"zd.Answering"));
  returned = {L"abc", 100};
  EXPECT_EQ(window_text(window.get()), L"abc");
  returned = {L"abc", 2};
  EXPECT_EQ(window_text(window.get()), L"ab");
  returned = {L"abc", 0};
  EXPECT_EQ(window_text(window.get()), L"");
  returned = {L"abc", -1};
  EXPECT_EQ(window_text(window.get()), L"");
}

TEST(WindowText, OfNoWindowIsEmpty) { EXPECT_EQ(window_text(nullptr), L""); }

}  // namespace
}  // namespace base
