#pragma once

#include <windows.h>
#include <comdef.h>

namespace platform {

/// Takes over a string that a call returned. If there is no memory for the holder, frees the string and throws
/// `_com_error`.
inline _bstr_t take_string(BSTR text) {
  _bstr_t holder;
  try {
    holder.Attach(text);
  } catch (...) {
    SysFreeString(text);
    throw;
  }
  return holder;
}

/// Whether two texts hold the same code units; a null text equals an empty one.
inline bool same_text(const _bstr_t& left, const _bstr_t& right) noexcept {
  if (left.length() != right.length()) return false;
  return left.length() == 0 || left == right;
}

}  // namespace platform
