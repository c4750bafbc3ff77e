#pragma once

#include <objbase.h>

#include <string>

namespace test_support {

/// A GUID in braces and capitals, as the registry holds it.
inline std::wstring guid_text(const GUID& guid) {
  wchar_t text[39] = {};
  StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

}  // namespace test_support
