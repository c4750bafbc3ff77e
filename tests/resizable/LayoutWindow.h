#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "ResizableLayout.h"
#include "TestWindows.h"

namespace resizable_test {

/// The mix-in alone on a window; a test may lay out the children with callbacks.
class LayoutWindow : public platform::CWindow, public CResizableLayout<LayoutWindow> {
 public:
  using CResizableLayout::Anchored;

  BOOL ArrangeLayoutCallback(LayoutInfo& info) {
    return callback ? callback(info) : CResizableLayout::ArrangeLayoutCallback(info);
  }

  std::function<BOOL(LayoutInfo&)> callback;
};

/// A layout whose parent has a client area of 300 x 200.
class AnchorLayout : public testing::Test {
 protected:
  AnchorLayout() { layout.Attach(parent.get()); }

  HWND child(const RECT& rect = {10, 20, 60, 40}, const wchar_t* window_class = L"Edit", DWORD style = 0) {
    return make_child(parent.get(), window_class, rect, style);
  }

  void grow_to(LONG width, LONG height) {
    resize(parent.get(), width, height);
    layout.ArrangeLayout();
  }

  OwnedWindow parent{make_popup()};
  LayoutWindow layout;
};

}  // namespace resizable_test
