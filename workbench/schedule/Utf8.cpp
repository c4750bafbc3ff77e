#include "Utf8.h"

#include <algorithm>

namespace workbench::schedule {

namespace {

constexpr std::size_t excerpt_length = 60;

unsigned byte_at(std::string_view text, std::size_t index) { return static_cast<unsigned char>(text[index]); }

bool is_continuation(std::string_view text, std::size_t index, unsigned least = 0x80, unsigned greatest = 0xBF) {
  return index < text.size() && byte_at(text, index) >= least && byte_at(text, index) <= greatest;
}

std::size_t line_of(std::string_view text, std::size_t offset) {
  return static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n')) +
         1;
}

std::optional<std::string> try_decode_utf16(std::string_view bytes, bool big_endian, std::size_t& invalid_line) {
  const auto unit_at = [&](std::size_t index) -> char32_t {
    return big_endian ? byte_at(bytes, index) << 8U | byte_at(bytes, index + 1)
                      : byte_at(bytes, index + 1) << 8U | byte_at(bytes, index);
  };
  std::string text;
  for (std::size_t i = 2; i < bytes.size(); i += 2) {
    const bool whole = i + 1 < bytes.size();
    char32_t character = whole ? unit_at(i) : 0xD800;
    if ((character & 0xFC00U) == 0xD800 && i + 3 < bytes.size() && (unit_at(i + 2) & 0xFC00U) == 0xDC00) {
      character = 0x10000 + ((character & 0x3FFU) << 10U) + (unit_at(i + 2) & 0x3FFU);
      i += 2;
    }
    if ((character & 0xFFFFF800U) == 0xD800) {
      invalid_line = line_of(text, text.size());
      return std::nullopt;
    }
    append_utf8(text, character);
  }
  return text;
}

}  // namespace

std::size_t utf8_sequence_length(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned first = byte_at(text, 0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return is_continuation(text, 1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF) {
    // The second byte excludes overlong forms and surrogates.
    const unsigned least = first == 0xE0 ? 0xA0 : 0x80;
    const unsigned greatest = first == 0xED ? 0x9F : 0xBF;
    return is_continuation(text, 1, least, greatest) && is_continuation(text, 2) ? 3 : 0;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    const unsigned least = first == 0xF0 ? 0x90 : 0x80;
    const unsigned greatest = first == 0xF4 ? 0x8F : 0xBF;
    return is_continuation(text, 1, least, greatest) && is_continuation(text, 2) && is_continuation(text, 3) ? 4 : 0;
  }
  return 0;
}

std::optional<std::size_t> find_invalid_utf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = utf8_sequence_length(text.substr(i, 4));
    if (length == 0) return i;
    i += length;
  }
  return std::nullopt;
}

std::optional<std::size_t> find_line_without_utf8(std::string_view text) {
  const std::size_t invalid = std::min(find_invalid_utf8(text).value_or(text.size()), text.find('\0'));
  if (invalid >= text.size()) return std::nullopt;
  return static_cast<std::size_t>(std::ranges::count(text.substr(0, invalid), '\n') + 1);
}

void append_utf8(std::string& text, char32_t character) {
  const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
  const auto continuation = [&](unsigned shift) { append(0x80U | (character >> shift & 0x3FU)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0U | character >> 6U);
    continuation(0);
  } else if (character < 0x10000) {
    append(0xE0U | character >> 12U);
    continuation(6);
    continuation(0);
  } else {
    append(0xF0U | character >> 18U);
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

std::string_view without_byte_order_mark(std::string_view text) {
  return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

std::optional<std::string> try_decode(std::string_view bytes, std::size_t& invalid_line) {
  if (bytes.starts_with("\xFF\xFE")) return try_decode_utf16(bytes, false, invalid_line);
  if (bytes.starts_with("\xFE\xFF")) return try_decode_utf16(bytes, true, invalid_line);
  const std::string_view text = without_byte_order_mark(bytes);
  if (const std::optional<std::size_t> invalid = find_invalid_utf8(text)) {
    invalid_line = line_of(text, *invalid);
    return std::nullopt;
  }
  return std::string(text);
}

std::string printable_excerpt(std::string_view text) {
  std::string excerpt;
  for (std::size_t i = 0, characters = 0; i < text.size(); ++characters) {
    if (characters == excerpt_length) return excerpt + "...";
    const std::size_t length = utf8_sequence_length(text.substr(i, 4));
    const bool printable = length > 1 || (length == 1 && byte_at(text, i) >= 0x20 && byte_at(text, i) != 0x7F);
    excerpt += printable ? text.substr(i, length) : "?";
    i += std::max<std::size_t>(length, 1);
  }
  return excerpt;
}

}  // namespace workbench::schedule
