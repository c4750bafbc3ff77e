#include "PastedDates.h"

namespace workbench {

namespace {

constexpr std::string_view full_width_comma = "，";

std::string with_plain_commas(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const bool full_width = text.starts_with(full_width_comma);
    plain += full_width ? ',' : text.front();
    text.remove_prefix(full_width ? full_width_comma.size() : 1);
  }
  return plain;
}

std::string_view trimmed(std::string_view line) {
  constexpr std::string_view spaces = " \r\n";
  const std::size_t begin = line.find_first_not_of(spaces);
  if (begin == std::string_view::npos) return {};
  return line.substr(begin, line.find_last_not_of(spaces) - begin + 1);
}

/// The two values of a line with a comma between them.
std::string separated(std::string_view line) {
  const std::size_t end = line.find_first_of(",\t ");
  if (end == std::string_view::npos) return std::string(line);
  const std::size_t next = line.find_first_not_of(",\t ", end);
  return std::string(line.substr(0, end)) + ',' +
         (next == std::string_view::npos ? "" : std::string(line.substr(next)));
}

}  // namespace

PastedDates date_file_of(std::string_view pasted) {
  const std::string plain = with_plain_commas(pasted);
  PastedDates dates;
  bool begun = false;
  std::string_view rest = plain;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = trimmed(rest.substr(0, end));
    if (!begun && !line.empty() && line.find("contract") == std::string_view::npos) {
      dates.file = "contract,date\n" + dates.file;
      dates.added_lines = 1;
    }
    begun |= !line.empty();
    dates.file += separated(line) + '\n';
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return dates;
}

}  // namespace workbench
