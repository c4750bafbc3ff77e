#pragma once

#include <windows.h>

#include <ostream>

#include "ResizableGeometry.h"

// Found by the test framework through the arguments' own namespace, which is the global one.

inline bool operator==(const RECT& left, const RECT& right) { return EqualRect(&left, &right) != FALSE; }

inline void PrintTo(const RECT& rect, std::ostream* out) {
  *out << "(" << rect.left << ", " << rect.top << ")-(" << rect.right << ", " << rect.bottom << ")";
}

inline void PrintTo(const CSize& size, std::ostream* out) { *out << size.cx << " x " << size.cy; }
