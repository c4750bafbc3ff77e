#include "EscapedText.h"

#include <algorithm>
#include <cstdio>

namespace workbench {

namespace {

bool is_pair(std::wstring_view text, std::size_t index) {
  return index + 1 < text.size() && (text[index] & 0xFC00) == 0xD800 && (text[index + 1] & 0xFC00) == 0xDC00;
}

bool is_printable(wchar_t unit) { return unit >= 0x20 && unit != 0x7F && (unit & 0xF800) != 0xD800; }

/// The value of a hexadecimal digit as it is written here, in capitals; nothing if it is none.
std::optional<unsigned> digit_value(wchar_t digit) {
  if (digit >= L'0' && digit <= L'9') return digit - L'0';
  if (digit >= L'A' && digit <= L'F') return digit - L'A' + 10;
  return std::nullopt;
}

/// The code unit that \uXXXX at the front of `text` stands for.
std::optional<wchar_t> escaped_unit(std::wstring_view text) {
  if (text.size() < 6 || text[1] != L'u') return std::nullopt;
  unsigned unit = 0;
  for (const wchar_t digit : text.substr(2, 4)) {
    const std::optional<unsigned> value = digit_value(digit);
    if (!value) return std::nullopt;
    unit = unit << 4 | *value;
  }
  return static_cast<wchar_t>(unit);
}

}  // namespace

std::wstring to_escaped_text(std::wstring_view text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (is_pair(text, i)) {
      result += text.substr(i++, 2);
    } else if (text[i] == L'\\') {
      result += L"\\\\";
    } else if (is_printable(text[i])) {
      result += text[i];
    } else {
      wchar_t code[8];
      _snwprintf(code, std::size(code), L"\\u%04X", static_cast<unsigned>(text[i]));
      result += code;
    }
  }
  return result;
}

std::optional<std::wstring> from_escaped_text(std::wstring escaped) {
  // Most names need no escapes.
  if (std::ranges::all_of(escaped, [](wchar_t unit) { return is_printable(unit) && unit != L'\\'; })) return escaped;
  std::wstring text;
  for (std::wstring_view left = escaped; !left.empty();) {
    if (left.front() != L'\\') {
      text += left.front();
      left.remove_prefix(1);
    } else if (left.starts_with(L"\\\\")) {
      text += L'\\';
      left.remove_prefix(2);
    } else if (const std::optional<wchar_t> unit = escaped_unit(left)) {
      text += *unit;
      left.remove_prefix(6);
    } else {
      return std::nullopt;
    }
  }
  // A text has one form only.
  if (to_escaped_text(text) != escaped) return std::nullopt;
  return text;
}

}  // namespace workbench
