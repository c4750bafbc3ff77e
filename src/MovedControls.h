#pragma once

#include <windows.h>

#include <vector>

namespace zd_expiration_rule_plugin::ui_helper {

/// Repaints what the layout of a dialog's controls leaves with an old picture. The system repaints what a moved control
/// uncovers, but a group box paints nothing except its lines, so that its old ones stay where its new rectangle covers
/// them; and a button or size grip that is moved onto a part of the dialog that is still to be erased loses a strip of
/// its picture.
class CMovedControls {
 public:
  /// Remembers where the group boxes, the buttons and the size grip of the dialog are. Throws `std::bad_alloc`.
  void measure(HWND dialog);

  /// Repaints the old and the new lines of the group boxes that moved since and the background that the
  /// buttons and the grip left or entered, but nothing of the other controls; remembers where all are now. Does nothing
  /// when nothing moved.
  void repaint(HWND dialog) noexcept;

 private:
  struct Control {
    HWND window;
    bool is_group_box;
    RECT rect;  ///< in client coordinates of the dialog
  };

  std::vector<Control> controls_;
};

}  // namespace zd_expiration_rule_plugin::ui_helper
