#pragma once

#include <windows.h>

#include <vector>

namespace resizable {

/// Windows to be moved together, in one batch of the system.
class WindowMoves {
 public:
  /// `expected` is how many windows may be added. Throws `std::bad_alloc`.
  explicit WindowMoves(std::size_t expected) : expected_(expected) { moves_.reserve(expected); }

  /// `rect` is in coordinates of the window's parent, `flags` are those of SetWindowPos. Leaves out what changes
  /// nothing. Throws `std::bad_alloc`.
  void add(HWND window, const RECT& rect, UINT flags);

  /// Moves all windows. The system drops a whole batch when one window cannot be moved; then each window is moved on
  /// its own, so that the others still move.
  void apply() const noexcept;

 private:
  struct Move {
    HWND window;
    RECT rect;
    UINT flags;
  };

  bool apply_as_batch() const noexcept;

  std::size_t expected_;
  std::vector<Move> moves_;
};

}  // namespace resizable
