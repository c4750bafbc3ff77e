#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "Recorder.h"
#include "SubclassedWindow.h"
#include "Thrower.h"

namespace platform {
namespace {

constexpr UINT subclass_message = WM_APP + 1;
constexpr LRESULT original_result = 11;

/// The messages that reached the window's own procedure.
std::vector<UINT> original_messages;

LRESULT CALLBACK original(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  original_messages.push_back(message);
  return message == subclass_message ? original_result : DefWindowProcW(window, message, wParam, lParam);
}

/// Another subclass, added after ours.
WNDPROC foreign_original = nullptr;
int foreign_messages = 0;

LRESULT CALLBACK foreign(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == subclass_message) ++foreign_messages;
  return CallWindowProcW(foreign_original, window, message, wParam, lParam);
}

class Subclass final : public CSubclassedWindow {
 public:
  Subclass() noexcept = default;
  ~Subclass() override = default;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result, DWORD) override {
    messages.push_back(message);
    EXPECT_EQ(window, m_hWnd);
    return handler && handler(message, wParam, lParam, result);
  }
  using CSubclassedWindow::CallOriginal;

  std::function<bool(UINT, WPARAM, LPARAM, LRESULT&)> handler;
  std::vector<UINT> messages;
};

class SubclassedWindowTest : public testing::Test {
 protected:
  SubclassedWindowTest() {
    original_messages.clear();
    foreign_original = nullptr;
    foreign_messages = 0;
    WNDCLASSW window_class = {};
    window_class.lpfnWndProc = original;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = L"zd.Subclassed";
    RegisterClassW(&window_class);
    window_ = CreateWindowExW(0, L"zd.Subclassed", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                              window_class.hInstance, nullptr);
  }
  ~SubclassedWindowTest() override {
    if (IsWindow(window_)) DestroyWindow(window_);
  }

  WNDPROC procedure() const { return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window_, GWLP_WNDPROC)); }
  LRESULT send(UINT message = subclass_message) const { return SendMessageW(window_, message, 0, 0); }
  void take_over_by_another() {
    foreign_original =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&foreign)));
  }
  void expect_no_property() const {
    EnumPropsW(window_, [](HWND, LPCWSTR name, HANDLE) -> BOOL {
      // A name may be an atom.
      const bool is_text = reinterpret_cast<ULONG_PTR>(name) > 0xFFFF;
      EXPECT_FALSE(is_text && std::wstring(name).starts_with(L"zd")) << "a property is left";
      return TRUE;
    });
  }

  test_support::Recorder recorder_;
  HWND window_ = nullptr;
};

TEST_F(SubclassedWindowTest, MessagesReachItFirstAndTheOriginalWhenItDoesNotHandleThem) {
  Subclass subclass;
  ASSERT_TRUE(subclass.SubclassWindow(window_));
  EXPECT_EQ(send(), original_result);
  EXPECT_EQ(subclass.messages, std::vector<UINT>{subclass_message});
  EXPECT_EQ(original_messages.back(), subclass_message);
}

TEST_F(SubclassedWindowTest, HandledMessagesStopThere) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  original_messages.clear();
  subclass.handler = [](UINT, WPARAM, LPARAM, LRESULT& result) {
    result = 22;
    return true;
  };
  EXPECT_EQ(send(), 22);
  EXPECT_TRUE(original_messages.empty());
  subclass.handler = nullptr;
}

TEST_F(SubclassedWindowTest, HandlerCanAskTheOriginalFirst) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  subclass.handler = [&](UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    result = message == subclass_message ? subclass.CallOriginal(message, wParam, lParam) * 2 : 0;
    return message == subclass_message;
  };
  EXPECT_EQ(send(), 2 * original_result);
}

TEST_F(SubclassedWindowTest, NoMessageReachesItBeforeOrAfter) {
  Subclass subclass;
  send();
  EXPECT_TRUE(subclass.messages.empty());
  subclass.SubclassWindow(window_);
  subclass.UnsubclassWindow();
  EXPECT_EQ(send(), original_result);
  EXPECT_TRUE(subclass.messages.empty());
  EXPECT_EQ(subclass.m_hWnd, nullptr);
  EXPECT_EQ(procedure(), &original);
  expect_no_property();
}

TEST_F(SubclassedWindowTest, CanBeSubclassedAgain) {
  Subclass subclass;
  ASSERT_TRUE(subclass.SubclassWindow(window_));
  subclass.UnsubclassWindow();
  subclass.UnsubclassWindow();
  ASSERT_TRUE(subclass.SubclassWindow(window_));
  send();
  EXPECT_EQ(subclass.messages.size(), 1u);
}

TEST_F(SubclassedWindowTest, WhatCannotBeTakenOverStaysAsItIs) {
  Subclass subclass;
  EXPECT_FALSE(subclass.SubclassWindow(nullptr));
  EXPECT_FALSE(subclass.SubclassWindow(reinterpret_cast<HWND>(0x7FFF0001)));
  EXPECT_EQ(subclass.m_hWnd, nullptr);

  ASSERT_TRUE(subclass.SubclassWindow(window_));
  EXPECT_FALSE(subclass.SubclassWindow(window_)) << "it holds a window already";
  Subclass other;
  EXPECT_FALSE(other.SubclassWindow(window_)) << "the window is taken already";
  EXPECT_EQ(send(), original_result);
  EXPECT_EQ(subclass.messages.size(), 1u);
  EXPECT_TRUE(other.messages.empty());
}

TEST_F(SubclassedWindowTest, ObjectDestroyedBeforeTheWindowPutsTheOriginalBack) {
  auto subclass = std::make_unique<Subclass>();
  subclass->SubclassWindow(window_);
  subclass.reset();
  EXPECT_EQ(procedure(), &original);
  EXPECT_EQ(send(), original_result);
  expect_no_property();
}

TEST_F(SubclassedWindowTest, WindowDestroyedBeforeTheObjectUnbindsIt) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  DestroyWindow(window_);
  EXPECT_EQ(subclass.m_hWnd, nullptr);
  EXPECT_EQ(subclass.messages.back(), static_cast<UINT>(WM_DESTROY)) << "the last message is the original's alone";
  EXPECT_EQ(original_messages.back(), static_cast<UINT>(WM_NCDESTROY));
}

TEST_F(SubclassedWindowTest, WindowMayBeDestroyedByItsOwnHandler) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  subclass.handler = [&](UINT message, WPARAM, LPARAM, LRESULT&) {
    if (message == subclass_message) DestroyWindow(window_);
    return message == subclass_message;
  };
  send();
  EXPECT_EQ(subclass.m_hWnd, nullptr);
  EXPECT_FALSE(IsWindow(window_));
}

TEST_F(SubclassedWindowTest, ExceptionOfAHandlerIsReportedAndTheOriginalHandlesTheMessage) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  for (const auto& thrower : test_support::throwers) {
    recorder_.reset();
    subclass.handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
      if (message != subclass_message) return false;
      result = 99;
      thrower.raise();
      return true;
    };
    EXPECT_EQ(send(), original_result) << thrower.name;
    const auto traces = recorder_.processed(L"TRACE");
    ASSERT_EQ(traces.size(), 1u) << thrower.name;
    EXPECT_EQ(test_support::field_text(traces[0], L"$Message").rfind(thrower.report, 0), 0u) << thrower.name;
  }
  subclass.handler = nullptr;
}

TEST_F(SubclassedWindowTest, LaterSubclassKeepsWorkingAfterUnsubclassing) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  take_over_by_another();
  EXPECT_EQ(send(), original_result);
  EXPECT_EQ(subclass.messages.size(), 1u);

  subclass.UnsubclassWindow();
  EXPECT_EQ(procedure(), &foreign) << "what is not ours is not taken away";
  EXPECT_EQ(send(), original_result);
  EXPECT_EQ(foreign_messages, 2);
  EXPECT_EQ(subclass.messages.size(), 1u);
}

TEST_F(SubclassedWindowTest, LaterSubclassSurvivesTheObject) {
  auto subclass = std::make_unique<Subclass>();
  subclass->SubclassWindow(window_);
  take_over_by_another();
  subclass.reset();
  EXPECT_EQ(send(), original_result);
  DestroyWindow(window_);
  EXPECT_EQ(original_messages.back(), static_cast<UINT>(WM_NCDESTROY));
}

TEST_F(SubclassedWindowTest, LaterSubclassThatIsRemovedAfterwardsLeavesTheOriginalWorking) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  take_over_by_another();
  subclass.UnsubclassWindow();
  SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(foreign_original));
  EXPECT_EQ(send(), original_result);
  EXPECT_TRUE(subclass.messages.empty());
}

TEST_F(SubclassedWindowTest, LaterSubclassOfADestroyedWindow) {
  Subclass subclass;
  subclass.SubclassWindow(window_);
  take_over_by_another();
  DestroyWindow(window_);
  EXPECT_EQ(subclass.m_hWnd, nullptr);
  EXPECT_EQ(original_messages.back(), static_cast<UINT>(WM_NCDESTROY));
}

}  // namespace
}  // namespace platform
