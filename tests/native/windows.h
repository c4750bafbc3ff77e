#pragma once

// The parts of the platform's header that the arithmetic needs, for a machine without that header.

#include <algorithm>
#include <cstdint>

using BOOL = std::int32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using UINT = std::uint32_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;

inline constexpr BOOL FALSE = 0;

struct POINT {
  LONG x;
  LONG y;
};
struct SIZE {
  LONG cx;
  LONG cy;
};
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
struct MINMAXINFO {
  POINT ptReserved;
  POINT ptMaxSize;
  POINT ptMaxPosition;
  POINT ptMinTrackSize;
  POINT ptMaxTrackSize;
};
struct NCCALCSIZE_PARAMS {
  RECT rgrc[3];
};
struct WINDOWPLACEMENT {
  UINT length;
  UINT flags;
  UINT showCmd;
  POINT ptMinPosition;
  POINT ptMaxPosition;
  RECT rcNormalPosition;
};

inline constexpr UINT SWP_NOSIZE = 0x1;
inline constexpr UINT SWP_NOMOVE = 0x2;
inline constexpr UINT SWP_NOZORDER = 0x4;
inline constexpr UINT SWP_NOACTIVATE = 0x10;
inline constexpr UINT SWP_NOCOPYBITS = 0x100;
inline constexpr UINT SWP_NOOWNERZORDER = 0x200;
inline constexpr UINT SW_SHOWNORMAL = 1;
inline constexpr UINT SW_SHOWMAXIMIZED = 3;
inline constexpr UINT SW_SHOW = 5;
inline constexpr UINT WPF_RESTORETOMAXIMIZED = 0x2;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_MAXIMIZE = 0x01000000;

inline BOOL IntersectRect(RECT* common, const RECT* one, const RECT* other) {
  *common = {std::max(one->left, other->left), std::max(one->top, other->top), std::min(one->right, other->right),
             std::min(one->bottom, other->bottom)};
  const bool is_empty = common->left >= common->right || common->top >= common->bottom;
  if (is_empty) *common = {};
  return !is_empty;
}
