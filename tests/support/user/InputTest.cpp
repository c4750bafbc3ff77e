#include <gtest/gtest.h>

#include "DialogDriver.h"
#include "Input.h"

namespace {

constexpr DWORD edit_style = WS_VISIBLE | WS_POPUP | WS_BORDER;

/// An edit field that is a window of its own, with the focus.
struct Input : testing::Test {
  Input() { SetFocus(edit); }
  ~Input() override { DestroyWindow(edit); }

  HWND edit = CreateWindowExW(0, L"EDIT", L"", edit_style, 0, 0, 200, 50, nullptr, nullptr, nullptr, nullptr);
};

TEST_F(Input, IsTypedWhereTheFocusIs) {
  test_support::type(L"a 1*中");
  EXPECT_EQ(L"a 1*中", test_support::window_text(edit));
}

TEST_F(Input, ReachesTheWindowThatLostTheForeground) {
  ASSERT_TRUE(SetForegroundWindow(GetDesktopWindow()));
  ASSERT_NE(edit, GetForegroundWindow());
  test_support::type(L"7");
  EXPECT_EQ(L"7", test_support::window_text(edit));
}

}  // namespace
