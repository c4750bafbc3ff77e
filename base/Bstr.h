#pragma once

#include <windows.h>
#include <oleauto.h>

#include <string_view>

#include "Owned.h"

namespace base {

/// Owns a BSTR.
using OwnedBstr = OwnedBy<BSTR, &SysFreeString>;

/// The text of a BSTR with the zeros that it may hold, as long as the BSTR lives. Null is an empty text.
inline std::wstring_view view_of(BSTR text) noexcept { return {text ? text : L"", SysStringLen(text)}; }

/// A new BSTR, which belongs to the caller; null when out of memory.
inline BSTR create_bstr(std::wstring_view text) noexcept {
  return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

}  // namespace base
