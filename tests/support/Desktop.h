#pragma once

namespace test_support {

/// Moves the process to a window station of its own, which is never shown, so that programs run side by side without
/// taking the foreground from each other and without a display. Threads that begin later are moved too. Must be called
/// before the process has any window. Returns whether it moved.
bool move_to_own_desktop();

}  // namespace test_support
