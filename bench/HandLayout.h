#pragma once

#include <windows.h>

#include <array>

namespace bench {

/// The layout that a dialog with the rule list's template would do by hand, knowing its children by name.
class HandLayout {
 public:
  /// The grip is a plain one, or one like the module's: triangular, and clipped by its siblings.
  enum class Grip { plain, triangular };

  /// Measures the children and creates the grip. In the dialog's WM_INITDIALOG.
  void measure(HWND dialog, Grip grip) noexcept;

  /// Moves the six children in one batch.
  void arrange() const noexcept;

  /// Moves the grip into the corner.
  void place_grip() const noexcept;

 private:
  static constexpr std::size_t count = 6;

  HDWP stretched(HDWP batch, std::size_t index, int right, int down) const noexcept;
  HDWP moved(HDWP batch, std::size_t index, int right, int down) const noexcept;

  HWND dialog_ = nullptr;
  HWND grip_ = nullptr;
  SIZE grip_size_ = {};
  RECT client_ = {};
  std::array<HWND, count> children_ = {};
  std::array<RECT, count> rects_ = {};
};

}  // namespace bench
