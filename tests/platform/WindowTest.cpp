#include <windows.h>
#include <gtest/gtest.h>

#include <map>

#include "Recorder.h"
#include "Window.h"

namespace platform {
namespace {

class WindowTest : public testing::Test {
 protected:
  WindowTest() : window_(make(L"EDIT")) {}
  ~WindowTest() override { DestroyWindow(window_); }

  static HWND make(const wchar_t* window_class) {
    return CreateWindowExW(WS_EX_TOPMOST, window_class, L"text", WS_POPUP, 10, 20, 120, 40, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  }

  /// The descriptions of the assertions so far.
  std::vector<std::wstring> assertions() const { return recorder_.texts(L"ASSERT", L"Description"); }

  test_support::Recorder recorder_;
  HWND window_;
};

TEST_F(WindowTest, RefersToAWindowWithoutOwningIt) {
  {
    CWindow window(window_);
    EXPECT_EQ(window.GetText(), L"text");
    EXPECT_EQ(window.Detach(), window_);
    EXPECT_EQ(window.m_hWnd, nullptr);
    window.Attach(window_);
  }
  EXPECT_TRUE(IsWindow(window_));
}

TEST_F(WindowTest, OperationsReachTheWindow) {
  const CWindow window(window_);
  window.SetText(L"\u5230\u671f");
  EXPECT_EQ(window.GetText(), L"\u5230\u671f");
  window.Enable(false);
  EXPECT_FALSE(IsWindowEnabled(window_));
  window.Enable(true);
  EXPECT_TRUE(IsWindowEnabled(window_));
  EXPECT_EQ(window.GetWindowRect().left, 10);
  EXPECT_EQ(window.GetClientRect().right, 120);
  EXPECT_TRUE(window.GetStyle() & WS_POPUP);
  EXPECT_TRUE(window.GetExStyle() & WS_EX_TOPMOST);
  EXPECT_EQ(window.Send(EM_GETLIMITTEXT), SendMessageW(window_, EM_GETLIMITTEXT, 0, 0));
  ShowWindow(window_, SW_SHOW);
  window.SetFocus();
  EXPECT_EQ(::GetFocus(), window_);
  EXPECT_TRUE(assertions().empty());
}

TEST_F(WindowTest, EveryOperationOnADestroyedWindowIsReportedAndReturnsNothing) {
  DestroyWindow(window_);
  const CWindow window(window_);
  EXPECT_EQ(window.Send(WM_GETTEXTLENGTH), 0);
  EXPECT_EQ(window.GetText(), L"");
  window.SetText(L"x");
  window.Enable(false);
  window.SetFocus();
  EXPECT_EQ(window.GetItem(1), nullptr);
  EXPECT_EQ(window.GetClientRect().right, 0);
  EXPECT_EQ(window.GetWindowRect().right, 0);
  EXPECT_EQ(window.GetStyle(), 0u);
  EXPECT_EQ(window.GetExStyle(), 0u);
  EXPECT_EQ(assertions(), std::vector<std::wstring>(10, L"::IsWindow(m_hWnd)"));
}

}  // namespace
}  // namespace platform
