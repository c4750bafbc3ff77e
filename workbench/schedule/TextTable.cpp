#include "TextTable.h"

#include <algorithm>

#include "Csv.h"
#include "Utf8.h"

namespace workbench::schedule {

namespace {

/// The lone surrogate at the beginning of the text, or 0.
unsigned surrogate_at(std::string_view text) {
  if (text.size() < 3) return 0;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(text[i])); };
  if (byte(0) != 0xED || byte(1) < 0xA0 || byte(1) > 0xBF || (byte(2) & 0xC0U) != 0x80U) return 0;
  return 0xD000U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
}

/// Calls `character` with each well-formed sequence, and `other` with what begins with a wrong byte, which returns how
/// many bytes it took.
template <class Character, class Other>
void for_each_character(std::string_view text, Character&& character, Other&& other) {
  while (!text.empty()) {
    std::size_t length = utf8_sequence_length(text.substr(0, 4));
    if (length > 0) {
      character(text.substr(0, length));
    } else {
      length = other(text);
    }
    text.remove_prefix(length);
  }
}

std::string unicode_escape(unsigned unit) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string escape = "\\u";
  for (const unsigned shift : {12U, 8U, 4U, 0U}) escape += digits[unit >> shift & 0xFU];
  return escape;
}

/// Columns that a character of these bytes takes. Characters of three bytes from U+1100 on are mostly Chinese, Japanese
/// or Korean.
std::size_t width_of(std::string_view character) {
  if (character.size() == 4) return 2;
  return character.size() == 3 && static_cast<unsigned char>(character.front()) >= 0xE3 ? 2 : 1;
}

std::size_t display_width(std::string_view text) {
  std::size_t width = 0;
  for_each_character(
      text, [&](std::string_view character) { width += width_of(character); },
      [&](std::string_view) {
        ++width;
        return std::size_t{1};
      });
  return width;
}

/// Keeps a row on its line.
std::string cell_text(const std::string& text) {
  std::string result = well_formed(text);
  for (char& unit : result) {
    if (static_cast<unsigned char>(unit) < 0x20 || unit == 0x7F) unit = ' ';
  }
  return result;
}

}  // namespace

std::string well_formed(std::string_view text) {
  std::string result;
  for_each_character(
      text, [&](std::string_view character) { result += character; },
      [&](std::string_view rest) {
        result += "\xEF\xBF\xBD";
        return surrogate_at(rest) != 0 ? std::size_t{3} : std::size_t{1};
      });
  return result;
}

std::string csv_text(const TextTable& table, const Progress& progress) {
  std::string text;
  for (std::size_t row = 0; row < table.size(); ++row) {
    advance(progress, row, table.size());
    std::vector<std::string> fields = table[row];
    for (std::string& field : fields) field = well_formed(field);
    append_csv(text, fields);
  }
  return text;
}

std::string aligned_text(const TextTable& table, const Progress& progress) {
  std::vector<std::size_t> widths;
  std::size_t done = 0;
  for (const std::vector<std::string>& row : table) {
    advance(progress, done++, 2 * table.size());
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], display_width(cell_text(row[i])));
  }
  std::string text;
  for (const std::vector<std::string>& row : table) {
    advance(progress, done++, 2 * table.size());
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string cell = cell_text(row[i]);
      line.append(cell).append(widths[i] - display_width(cell) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append("\n");
  }
  return text;
}

std::string json_string(std::string_view text) {
  std::string result = "\"";
  for_each_character(
      text,
      [&](std::string_view character) {
        const auto first = static_cast<unsigned char>(character.front());
        if (first == '"' || first == '\\') result += '\\';
        if (first < 0x20 || first == 0x7F) {
          result += unicode_escape(first);
        } else {
          result += character;
        }
      },
      [&](std::string_view rest) {
        const unsigned surrogate = surrogate_at(rest);
        result += surrogate != 0 ? unicode_escape(surrogate) : "\xEF\xBF\xBD";
        return surrogate != 0 ? std::size_t{3} : std::size_t{1};
      });
  return result + '"';
}

std::string html_text(std::string_view text) {
  std::string result;
  for (const char unit : well_formed(text)) {
    switch (unit) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += static_cast<unsigned char>(unit) < 0x20 ? ' ' : unit;
    }
  }
  return result;
}

}  // namespace workbench::schedule
