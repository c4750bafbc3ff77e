#pragma once

#include <windows.h>

#include <functional>

#include "Controls.h"
#include "OwnedWindow.h"
#include "PrintGeometry.h"
#include "SubclassedWindow.h"

namespace resizable_test {

using test_support::OwnedWindow;
using test_support::rect_of;

/// A popup without a frame, so that its client area is as large as it is: 300 x 200 at (100, 100), not shown.
HWND make_popup(DWORD more_style = 0);

HWND make_child(HWND parent, const wchar_t* window_class, const RECT& rect, DWORD style = 0);

/// Changes the size of a window and nothing else.
void resize(HWND window, LONG width, LONG height);

CSize client_size(HWND window);

/// Whether a window's region is the lower right half of its rectangle.
bool is_cut_to_triangle(HWND window);

/// Lets a test handle the messages of a window.
class Listener : public platform::CSubclassedWindow {
 public:
  /// Returns whether the message is handled, with its result.
  using Handler = std::function<bool(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)>;

  Listener(HWND window, Handler handler) : handler_(std::move(handler)) { SubclassWindow(window); }

  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result, DWORD) override {
    return handler_(message, wParam, lParam, result);
  }

 private:
  Handler handler_;
};

}  // namespace resizable_test
