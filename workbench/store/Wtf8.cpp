#include "Wtf8.h"

#include "Utf8.h"

namespace workbench {

namespace {

constexpr bool is_high_surrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool is_low_surrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Zero is written in two bytes, so that no stored text has a zero byte.
void append_code_point(std::string& bytes, char32_t point) {
  if (point == 0) {
    bytes += "\xC0\x80";
  } else {
    schedule::append_utf8(bytes, point);
  }
}

void append_units(std::wstring& text, char32_t point) {
  if (point < 0x10000) {
    text += static_cast<wchar_t>(point);
    return;
  }
  text += static_cast<wchar_t>(0xD7C0 + (point >> 10));
  text += static_cast<wchar_t>(0xDC00 | (point & 0x3FF));
}

/// What the first byte of a sequence says: how many bytes follow, its own bits, the least code point of that length.
struct Lead {
  std::size_t tail;
  char32_t bits;
  char32_t least;
};

constexpr Lead read_lead(unsigned char first) {
  if (first < 0x80) return {0, first, 0};
  if (first >= 0xC0 && first < 0xE0) return {1, first & 0x1Fu, 0x80};
  if (first >= 0xE0 && first < 0xF0) return {2, first & 0x0Fu, 0x800};
  if (first >= 0xF0 && first < 0xF8) return {3, first & 0x07u, 0x10000};
  return {0, 0xFFFD, 0};
}

/// Reads one code point from the front of `bytes`, which are not empty, and takes it off them.
char32_t take_code_point(std::string_view& bytes) {
  const Lead lead = read_lead(static_cast<unsigned char>(bytes.front()));
  char32_t point = lead.bits;
  bool valid = bytes.size() > lead.tail;
  for (std::size_t i = 1; valid && i <= lead.tail; ++i) {
    const auto next = static_cast<unsigned char>(bytes[i]);
    valid = (next & 0xC0) == 0x80;
    point = point << 6 | (next & 0x3Fu);
  }
  valid = valid && (point >= lead.least || (point == 0 && lead.tail == 1)) && point <= 0x10FFFF;
  bytes.remove_prefix(valid ? lead.tail + 1 : 1);
  return valid ? point : 0xFFFD;
}

}  // namespace

std::string to_wtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    if (is_high_surrogate(point) && i + 1 < text.size() && is_low_surrogate(text[i + 1]))
      point = (point << 10) + text[++i] - 0x35FDC00;
    append_code_point(bytes, point);
  }
  return bytes;
}

std::wstring from_wtf8(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  while (!bytes.empty()) append_units(text, take_code_point(bytes));
  return text;
}

}  // namespace workbench
