#include "TextEncoding.h"

#include <windows.h>

namespace base {

std::string to_utf8(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

// A text has at most as many units in UTF-16 as it has bytes in UTF-8.
std::wstring from_utf8(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring units(text.size(), L'\0');
  units.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, units.data(), size)));
  return units;
}

}  // namespace base
