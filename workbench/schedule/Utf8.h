#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace workbench::schedule {

/// The length of the well-formed UTF-8 sequence at the beginning of this text, or 0.
std::size_t utf8_sequence_length(std::string_view text);

/// Where the first byte lies that does not belong to well-formed UTF-8.
std::optional<std::size_t> find_invalid_utf8(std::string_view text);

/// The line, from 1, on which the text is not UTF-8: the first one with a byte that does not belong to it, or with a
/// zero, as UTF-16 has them.
std::optional<std::size_t> find_line_without_utf8(std::string_view text);

/// The character in UTF-8. A surrogate gets the three bytes of its number, which is not well-formed.
void append_utf8(std::string& text, char32_t character);

/// The text without a byte order mark at its beginning.
std::string_view without_byte_order_mark(std::string_view text);

/// The text in UTF-8, without byte order mark: from UTF-8 with or without one, or from UTF-16 with one. Nothing if it
/// is neither; `invalid_line` then is the line, from 1, of the first wrong character.
std::optional<std::string> try_decode(std::string_view bytes, std::size_t& invalid_line);

/// The beginning of the text as one printable line: control characters and wrong bytes become question marks.
std::string printable_excerpt(std::string_view text);

}  // namespace workbench::schedule
