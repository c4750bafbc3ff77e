#include <gtest/gtest.h>

#include "Controls.h"
#include "Input.h"
#include "OwnedWindow.h"
#include "ScreenInput.h"
#include "WindowText.h"

namespace test_support {
namespace {

/// An edit control that is a window of its own, with the focus.
struct InputTest : testing::Test {
  InputTest() { SetFocus(edit.get()); }

  std::wstring text() const { return base::window_text(edit.get()); }

  OwnedWindow edit{CreateWindowExW(0, L"EDIT", L"", WS_VISIBLE | WS_POPUP | WS_BORDER | ES_AUTOHSCROLL, 0, 0, 200, 50,
                                   nullptr, nullptr, nullptr, nullptr)};
};

TEST_F(InputTest, TypesWhereTheFocusIs) {
  type(L"a 1*中");
  EXPECT_EQ(L"a 1*中", text());
  press(VK_BACK);
  press(VK_HOME);
  press(VK_DELETE);
  EXPECT_EQ(L" 1*", text());
}

struct InputOnScreen : InputTest {};

TEST_F(InputOnScreen, IsTypedWhereTheFocusIs) {
  screen::type(L"a 1*中");
  EXPECT_EQ(L"a 1*中", text());
}

TEST_F(InputOnScreen, ReachesTheWindowThatLostTheForeground) {
  ASSERT_TRUE(SetForegroundWindow(GetDesktopWindow()));
  ASSERT_NE(edit.get(), GetForegroundWindow());
  screen::type(L"7");
  EXPECT_EQ(L"7", text());
}

}  // namespace
}  // namespace test_support
