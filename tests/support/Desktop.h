#pragma once

namespace test_support {

/// Moves the process to a window station of its own, which is never shown, so that programs run side by side without
/// taking the foreground from each other and without a display. Must be called before the process has any window.
/// Returns whether it moved.
bool move_to_own_desktop();

/// Moves the calling thread to that desktop, if there is one. On the test platform a thread begins where the process
/// began, and there finds none of its windows.
void join_own_desktop();

}  // namespace test_support
