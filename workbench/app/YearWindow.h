#pragma once

#include <functional>

#include "Window.h"
#include "YearPainter.h"

namespace workbench {

/// A child window that shows a year at a glance. It is drawn into memory first, so that it does not flicker.
class YearWindow final : public Window {
 public:
  /// `failed` is called while an exception of this window is handled. It must not throw.
  YearWindow(HWND parent, UINT id, std::function<void()> failed);

  void show(YearPicture picture);
  void use_resolution(int dpi);

 protected:
  LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;
  void message_failed() noexcept override { failed_(); }

 private:
  void paint();

  std::function<void()> failed_;
  YearPicture picture_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
};

}  // namespace workbench
