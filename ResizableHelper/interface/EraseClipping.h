#pragma once

#include <windows.h>

#include "ChildLayout.h"
#include "Owned.h"

namespace resizable {

/// The client area of a dialog as a region; empty when the system is out of regions.
base::Region client_region(HWND dialog) noexcept;

/// Takes a visible child out of the area that its dialog erases, or puts it in when the child does not paint all of its
/// area itself.
void combine_with_child(const base::Region& erased, HWND dialog, const LayoutInfo& info) noexcept;

}  // namespace resizable
