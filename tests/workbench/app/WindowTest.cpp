#include <comdef.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "Window.h"

namespace workbench {
namespace {

constexpr UINT throwing_message = WM_APP + 7;
constexpr WindowParameters small_window{L"zdWindowTest", L"", WS_POPUP, nullptr, nullptr, nullptr};

class SmallWindow final : public Window {
 public:
  explicit SmallWindow(bool fails_to_open = false) : fails_to_open_(fails_to_open) { create(small_window); }

  int messages = 0;
  int failures = 0;

 protected:
  LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override {
    ++messages;
    if (message == throwing_message) throw std::runtime_error("test");
    if (message == WM_CREATE && fails_to_open_) throw 1;
    return default_treatment(message, wparam, lparam);
  }
  void message_failed() noexcept override { ++failures; }

 private:
  bool fails_to_open_;
};

TEST(Window, ExceptionOfAHandlerStaysInside) {
  SmallWindow window;
  EXPECT_EQ(SendMessageW(window.handle(), throwing_message, 0, 0), 0);
  EXPECT_EQ(window.failures, 1);
}

TEST(Window, FailureToOpenIsThrown) { EXPECT_THROW(SmallWindow(true), _com_error); }

TEST(Window, DestroyedWindowIsUnbound) {
  SmallWindow window;
  HWND handle = window.handle();
  DestroyWindow(handle);
  EXPECT_EQ(window.handle(), nullptr);
  EXPECT_FALSE(IsWindow(handle));
}

TEST(Window, WindowGoesWithItsObject) {
  HWND handle = nullptr;
  {
    const SmallWindow window;
    handle = window.handle();
    EXPECT_TRUE(IsWindow(handle));
  }
  EXPECT_FALSE(IsWindow(handle));
}

TEST(Window, MessageBeforeBindAndAfterUnbindGetsTheDefaultTreatment) {
  SmallWindow window;
  SetWindowLongPtrW(window.handle(), GWLP_USERDATA, 0);
  const int before = window.messages;
  EXPECT_EQ(SendMessageW(window.handle(), throwing_message, 0, 0), 0);
  EXPECT_EQ(window.messages, before);
  SetWindowLongPtrW(window.handle(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(static_cast<Window*>(&window)));
}

}  // namespace
}  // namespace workbench
