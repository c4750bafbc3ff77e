#pragma once

#include <windows.h>

#include <atomic>

/// A resizable dialog asks its children about their layout with the registered message WMU_RESIZESUPPORT. wParam is one
/// of the questions below; a child that handles one returns non-zero.
inline constexpr WPARAM RQ_PROPERTIES = 101;  ///< lParam: ChildResizeFlags*, which the child may rewrite
inline constexpr WPARAM RQ_CLIPPING = 102;    ///< lParam: BOOL*, preset FALSE: may the child's area stay unerased?
inline constexpr WPARAM RQ_REPAINT = 103;     ///< lParam: RepaintQuery*: must the child repaint when it moves?

struct ChildResizeFlags {
  BOOL ask_clipping;    ///< ask RQ_CLIPPING at each use instead of taking `likes_clipping`
  BOOL ask_refresh;     ///< ask RQ_REPAINT at each use instead of taking `needs_refresh`
  BOOL likes_clipping;  ///< the child paints all of its area: the dialog need not erase it
  BOOL needs_refresh;   ///< nothing of the child's old picture can be kept when it moves
};

struct RepaintQuery {
  BOOL repaint;  ///< the result, preset TRUE
  RECT old_rect;
  RECT new_rect;  ///< both in the dialog's client coordinates
};

/// The number of the message as the senders read it; 0 until it is registered.
extern UINT WMU_RESIZESUPPORT;

class RegisterResizeMessage {
 public:
  /// Registers the message at the first call, keeps its number for the process and hands it to the senders at each. A
  /// failed registration is reported as an assertion, returns 0 and is tried again at the next call.
  static UINT GetRegisteredWMU_RESIZESUPPORT() noexcept;

  /// The number for the process; 0 until the message is registered.
  static std::atomic<UINT> uRegisterdWMU_RESIZESUPPORT;
};
