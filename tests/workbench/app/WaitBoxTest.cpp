#include <atomic>
#include <thread>

#include "ApplicationTest.h"
#include "Controls.h"
#include "MessagePump.h"
#include "WaitBox.h"
#include "WithinSeconds.h"
#include "resource.h"

namespace workbench {
namespace {

using std::chrono::milliseconds;

/// The program while the server of its store is silent.
class WaitBoxTest : public ApplicationTest {
 protected:
  WaitBoxTest() {
    WaitBox::delay_ms = 50;
    start();
    ShowWindow(window(), SW_SHOW);
    test_support::pump_messages();
  }
  ~WaitBoxTest() override { WaitBox::delay_ms = 1000; }

  /// The box, once it is shown; null if it does not come.
  static HWND find_box() {
    HWND box = nullptr;
    test_support::within_seconds(5, [&] { return (box = shown_wait_box()) != nullptr; });
    return box;
  }

  /// Counts the messages that reach a window.
  struct Counted {
    int paints = 0;
    int others = 0;
  };
  static LRESULT CALLBACK count(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR data) {
    auto& counted = *reinterpret_cast<Counted*>(data);
    if (message == WM_PAINT) ++counted.paints;
    if (message == WM_COMMAND || message == WM_TIMER || message == WM_KEYDOWN || message == WM_LBUTTONDOWN)
      ++counted.others;
    return DefSubclassProc(window, message, wparam, lparam);
  }

  base::KernelHandle answered_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

TEST_F(WaitBoxTest, AnswerThatComesSoonShowsNoBox) {
  SetEvent(answered_.get());
  WaitBox box(L"desk");
  EXPECT_TRUE(box.wait(answered_.get(), milliseconds(5000)));
}

TEST_F(WaitBoxTest, WaitEndsAfterItsTime) {
  WaitBox box(L"desk");
  const ULONGLONG start = GetTickCount64();
  EXPECT_TRUE(box.wait(answered_.get(), milliseconds(200)));
  EXPECT_GE(GetTickCount64() - start, 190u);
}

TEST_F(WaitBoxTest, UserReadsWhatIsWaitedForAndGivesUp) {
  std::wstring said;
  std::jthread user([&] {
    HWND box = find_box();
    said = test_support::item_text(box, IDC_WAIT_MESSAGE);
    PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
  });
  {
    WaitBox box(L"user@desk");
    EXPECT_FALSE(box.wait(answered_.get(), milliseconds(20'000)));
    EXPECT_FALSE(box.wait(answered_.get(), milliseconds(20'000))) << "the user has given up for good";
  }
  user.join();
  EXPECT_NE(said.find(L"user@desk"), std::wstring::npos);
  EXPECT_EQ(FindWindowExW(nullptr, nullptr, WC_DIALOG, said.c_str()), nullptr);
}

TEST_F(WaitBoxTest, WorkOfThisThreadIsGivenUpToo) {
  std::jthread user([] { PostMessageW(find_box(), WM_COMMAND, IDCANCEL, 0); });
  WaitBox box(L"rules.db");
  EXPECT_TRUE(box.go_on());
  const ULONGLONG end = GetTickCount64() + 20'000;
  while (box.go_on() && GetTickCount64() < end) Sleep(1);
  EXPECT_FALSE(box.go_on());
}

TEST_F(WaitBoxTest, FramePaintsItselfAndNothingElseReachesIt) {
  Counted counted;
  SetWindowSubclass(window(), &count, 0, reinterpret_cast<DWORD_PTR>(&counted));
  std::jthread user([&] {
    find_box();
    PostMessageW(window(), WM_COMMAND, IDM_REFRESH, 0);
    PostMessageW(window(), WM_KEYDOWN, VK_F5, 0);
    PostMessageW(rules(), WM_LBUTTONDOWN, 0, MAKELPARAM(5, 30));
    const ULONGLONG sent = GetTickCount64();
    SendMessageTimeoutW(window(), WM_COMMAND, IDM_REFRESH, 0, SMTO_NORMAL, 200, nullptr);
    EXPECT_GE(GetTickCount64() - sent, 150u);
    RedrawWindow(window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
    Sleep(300);
    SetEvent(answered_.get());
  });
  {
    InvalidateRect(window(), nullptr, TRUE);
    WaitBox box(L"desk");
    EXPECT_TRUE(box.wait(answered_.get(), milliseconds(20'000)));
  }
  EXPECT_GE(counted.paints, 1);
  EXPECT_EQ(counted.others, 0);
  user.join();
  test_support::pump_messages();
  EXPECT_GE(counted.others, 2) << "what was posted is seen afterwards";
  RemoveWindowSubclass(window(), &count, 0);
}

/// With the real keyboard and the real mouse.
class WaitBoxOnScreen : public WaitBoxTest {};

TEST_F(WaitBoxOnScreen, WhatIsTypedWhileTheBoxIsShownIsDroppedAndWithoutItWaits) {
  Counted counted;
  SetWindowSubclass(rules(), &count, 0, reinterpret_cast<DWORD_PTR>(&counted));
  const auto type_and_wait = [&] {
    SetForegroundWindow(window());
    SetFocus(rules());
    test_support::pump_messages();
    INPUT input[2]{};
    input[0].type = input[1].type = INPUT_KEYBOARD;
    input[0].ki.wVk = input[1].ki.wVk = VK_F5;
    input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    EXPECT_EQ(SendInput(2, input, sizeof(INPUT)), 2u);
    WaitBox box(L"desk");
    EXPECT_TRUE(box.wait(answered_.get(), milliseconds(20'000)));
  };
  std::jthread server([&] {
    EXPECT_TRUE(find_box());
    SetEvent(answered_.get());
  });
  type_and_wait();
  test_support::pump_messages();
  EXPECT_EQ(counted.others, 0);
  type_and_wait();
  test_support::pump_messages();
  EXPECT_EQ(counted.others, 1) << "the answer came soon";
  RemoveWindowSubclass(rules(), &count, 0);
}

TEST_F(WaitBoxOnScreen, ClickWhileTheBoxIsShownIsDropped) {
  Counted counted;
  SetWindowSubclass(rules(), &count, 0, reinterpret_cast<DWORD_PTR>(&counted));
  const auto click_at = [&](int y) {
    RECT list{};
    GetWindowRect(rules(), &list);
    const auto in_parts = [](int pixels, int metric) {
      const int size = GetSystemMetrics(metric);
      return (pixels * 0x10000 + size - 1) / size;
    };
    INPUT input[2]{};
    for (INPUT& part : input) {
      part.type = INPUT_MOUSE;
      part.mi.dx = in_parts(list.left + 10, SM_CXSCREEN);
      part.mi.dy = in_parts(list.top + y, SM_CYSCREEN);
      part.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    }
    input[0].mi.dwFlags |= MOUSEEVENTF_LEFTDOWN;
    input[1].mi.dwFlags |= MOUSEEVENTF_LEFTUP;
    EXPECT_EQ(SendInput(2, input, sizeof(INPUT)), 2u);
  };
  std::jthread user([&] {
    EXPECT_TRUE(find_box());
    click_at(40);
    Sleep(100);
    SetEvent(answered_.get());
  });
  {
    WaitBox box(L"desk");
    EXPECT_TRUE(box.wait(answered_.get(), milliseconds(20'000)));
  }
  test_support::pump_messages();
  EXPECT_EQ(counted.others, 0);
  Sleep(20);
  click_at(100);  // elsewhere, because it would be the second one of a double click
  EXPECT_TRUE(test_support::within_seconds(5, [&] {
    test_support::pump_messages();
    return counted.others == 1;
  })) << "what is clicked later arrives";
  RemoveWindowSubclass(rules(), &count, 0);
}

TEST_F(WaitBoxTest, WhatAnotherThreadSendsIsReceivedAfterTheCallOfThePlugin) {
  Counted counted;
  SetWindowSubclass(window(), &count, 0, reinterpret_cast<DWORD_PTR>(&counted));
  std::atomic<bool> is_sending = false;
  std::jthread sender([&] {
    find_box();
    is_sending = true;
    SendMessageW(window(), WM_COMMAND, IDM_REFRESH, 0);
  });
  std::jthread server([&] {
    EXPECT_TRUE(test_support::within_seconds(10, [&] { return is_sending.load(); }));
    Sleep(200);
    SetEvent(answered_.get());
  });
  {
    WaitBox box(L"desk");
    EXPECT_TRUE(box.wait(answered_.get(), milliseconds(20'000)));
  }
  EXPECT_EQ(counted.others, 0) << "the plug-in is still in its call";
  test_support::pump_messages();
  EXPECT_GE(counted.others, 1);
  sender.join();
  RemoveWindowSubclass(window(), &count, 0);
}

}  // namespace
}  // namespace workbench
