#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "RuleRecords.h"
#include "Utf8.h"

namespace workbench::schedule {

namespace {

// The parser refuses lone surrogates. Each \uXXXX that is one becomes this character of the private use area and its
// four digits, and so does the character itself.
constexpr char32_t marker = 0xE0F0;
constexpr std::string_view marker_escape = "\\uE0F0";
constexpr std::string_view marker_bytes = "\xEE\x83\xB0";

std::optional<unsigned> try_parse_hex(std::string_view digits) {
  if (digits.size() != 4) return std::nullopt;
  unsigned number = 0;
  for (const char digit : digits) {
    const std::size_t value = std::string_view("0123456789abcdef0123456789ABCDEF").find(digit);
    if (value == std::string_view::npos) return std::nullopt;
    number = number * 16 + static_cast<unsigned>(value % 16);
  }
  return number;
}

/// The code unit of an escape \uXXXX at the beginning of the text.
std::optional<unsigned> escape_at(std::string_view text) {
  return text.starts_with("\\u") ? try_parse_hex(text.substr(2, 4)) : std::nullopt;
}

/// The text with markers. Escapes occur within strings only, so strings need not be distinguished.
std::string marked(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    std::size_t length = text.front() == '\\' ? std::min<std::size_t>(2, text.size()) : 1;
    if (const std::optional<unsigned> unit = escape_at(text)) {
      const std::optional<unsigned> next = escape_at(text.substr(6));
      const bool is_pair = (*unit & 0xFC00U) == 0xD800 && next && (*next & 0xFC00U) == 0xDC00;
      length = is_pair ? 12 : 6;
      if (!is_pair && ((*unit & 0xF800U) == 0xD800 || *unit == marker)) {
        result.append(marker_escape).append(text.substr(2, 4));
        text.remove_prefix(length);
        continue;
      }
    } else if (text.starts_with(marker_bytes)) {
      result.append(marker_escape).append("E0F0");
      text.remove_prefix(marker_bytes.size());
      continue;
    }
    result += text.substr(0, length);
    text.remove_prefix(length);
  }
  return result;
}

/// A string of marked text as it was meant.
std::string unmarked(std::string_view text) {
  std::string result;
  for (std::size_t at = text.find(marker_bytes); at != std::string_view::npos; at = text.find(marker_bytes)) {
    result += text.substr(0, at);
    text.remove_prefix(at + marker_bytes.size());
    append_utf8(result, try_parse_hex(text.substr(0, 4)).value_or(marker));
    text.remove_prefix(std::min<std::size_t>(4, text.size()));
  }
  return result.append(text);
}

/// Counts the lines that the parser has read.
class LineIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  LineIterator(const char* at, std::size_t* line) : at_(at), line_(line) {}

  reference operator*() const { return *at_; }
  LineIterator& operator++() {
    if (*at_++ == '\n') ++*line_;
    return *this;
  }
  bool operator==(const LineIterator& other) const { return at_ == other.at_; }
  bool operator!=(const LineIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  std::size_t* line_;
};

/// Takes the parser's events. A method returns false to end the parsing, after a mistake in the file's form.
class RuleJsonReader {
 public:
  using number_integer_t = nlohmann::json::number_integer_t;
  using number_unsigned_t = nlohmann::json::number_unsigned_t;
  using number_float_t = nlohmann::json::number_float_t;

  RuleJsonReader(const std::size_t& line, std::size_t lines, const Progress& progress)
      : line_(line), lines_(lines), progress_(progress) {}

  RuleFile finish() {
    std::ranges::stable_sort(file_.mistakes, {}, &Mistake::line);
    return std::move(file_);
  }

  bool null() { return value("null", false); }
  bool boolean(bool flag) { return value(flag ? "true" : "false", false); }
  bool number_integer(number_integer_t number) { return value(std::to_string(number), true); }
  bool number_unsigned(number_unsigned_t number) { return value(std::to_string(number), true); }
  bool number_float(number_float_t, const std::string& text) { return value(text, false); }
  bool string(std::string& text) { return text_value(unmarked(text)); }
  bool binary(nlohmann::json::binary_t&) { return refuse(); }

  bool start_object(std::size_t) {
    ++depth_;
    if (depth_ == 3) {
      fields_.assign(columns().size(), std::nullopt);
      record_line_ = line_;
    }
    return depth_ == 1 || depth_ == 3 ? true : refuse();
  }

  bool end_object() {
    if (depth_-- == 3) add_record();
    return true;
  }

  bool start_array(std::size_t) {
    ++depth_;
    if (depth_ != 2) return refuse();
    if (in_rules_) {
      file_.rules.emplace();
    } else {
      file_.settings.emplace();
    }
    return true;
  }

  bool end_array() {
    --depth_;
    return true;
  }

  bool key(std::string& raw) {
    const std::string name = unmarked(raw);
    if (depth_ == 1) {
      in_rules_ = name == "rules";
      if (!in_rules_ && name != "settings") return refuse();
      if (in_rules_ ? file_.rules.has_value() : file_.settings.has_value()) return repeated(name);
      return true;
    }
    const auto found = std::ranges::find(columns(), name);
    column_ = static_cast<std::size_t>(found - columns().begin());
    if (found == columns().end()) {
      if (std::ranges::find(file_.ignored_columns, name) == file_.ignored_columns.end())
        file_.ignored_columns.push_back(name);
    } else if (fields_[column_]) {
      return repeated(name);
    }
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) { return refuse(); }

 private:
  std::span<const std::string_view> columns() const {
    return in_rules_ ? std::span<const std::string_view>(rule_columns)
                     : std::span<const std::string_view>(setting_columns);
  }

  bool refuse() {
    file_.mistakes.push_back({line_, MistakeKind::json});
    return false;
  }

  bool repeated(const std::string& name) {
    file_.mistakes.push_back({line_, MistakeKind::repeated_column, {name}});
    return false;
  }

  bool value(const std::string& text, bool is_number) {
    if (depth_ != 3) return refuse();
    if (column_ == columns().size()) return true;
    if (is_number && in_rules_ && column_ > 0) {
      fields_[column_] = text;
      return true;
    }
    return wrong_type(text);
  }

  bool text_value(std::string text) {
    if (depth_ != 3) return refuse();
    if (column_ == columns().size()) return true;
    if (in_rules_ && column_ > 0) return wrong_type(text);
    fields_[column_] = std::move(text);
    return true;
  }

  bool wrong_type(const std::string& text) {
    const bool number = in_rules_ && column_ > 0;
    file_.mistakes.push_back(
        {line_, number ? MistakeKind::number : MistakeKind::json_text, {std::string(columns()[column_]), text}});
    return false;
  }

  void add_record() {
    advance(progress_, line_, lines_);
    CsvRecord record{record_line_, {}};
    bool complete = true;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      if (!fields_[i]) {
        file_.mistakes.push_back({record_line_, MistakeKind::missing_column, {std::string(columns()[i])}});
        complete = false;
      }
      record.fields.push_back(std::move(fields_[i]).value_or(std::string()));
    }
    if (!complete) return;
    if (!in_rules_) {
      if (std::optional<NamedSetting> setting = try_read_setting(record, file_.mistakes))
        file_.settings->push_back({record_line_, std::move(*setting)});
    } else if (std::optional<NamedRule> rule = try_read_rule(record, file_.mistakes)) {
      file_.rules->push_back({record_line_, std::move(*rule)});
    }
  }

  const std::size_t& line_;
  std::size_t lines_;
  const Progress& progress_;
  RuleFile file_;
  int depth_ = 0;
  bool in_rules_ = false;
  std::size_t column_ = 0;
  std::size_t record_line_ = 0;
  std::vector<std::optional<std::string>> fields_;
};

}  // namespace

RuleFile read_rules_json(std::string_view bytes, const Progress& progress) {
  std::size_t line = 1;
  const std::optional<std::string> text = try_decode(bytes, line);
  if (!text) return {.mistakes = {{line, MistakeKind::not_text}}};
  const std::string prepared = marked(*text);
  line = 1;
  const auto lines = static_cast<std::size_t>(std::ranges::count(prepared, '\n')) + 1;
  RuleJsonReader reader(line, lines, progress);
  nlohmann::json::sax_parse(LineIterator(prepared.data(), &line),
                            LineIterator(prepared.data() + prepared.size(), &line), &reader);
  return reader.finish();
}

}  // namespace workbench::schedule
