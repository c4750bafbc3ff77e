#include "Csv.h"

#include "Utf8.h"

namespace workbench::schedule {

namespace {

class CsvParser {
 public:
  CsvParser(std::string_view text, char separator, std::size_t first_line)
      : text_(text), separator_(separator), line_(first_line) {}

  CsvRecords parse(const Progress& progress) {
    while (at_ < text_.size()) {
      advance(progress, at_, text_.size());
      if (is_line_end()) {
        skip_line_end();
      } else {
        parse_record();
      }
    }
    return std::move(result_);
  }

 private:
  bool is_line_end() const { return text_[at_] == '\r' || text_[at_] == '\n'; }
  bool is_field_end() const { return at_ == text_.size() || text_[at_] == separator_ || is_line_end(); }

  void skip_line_end() {
    at_ += text_.substr(at_).starts_with("\r\n") ? 2 : 1;
    ++line_;
  }

  void parse_record() {
    CsvRecord record{line_, {}};
    const std::size_t mistakes = result_.mistakes.size();
    while (true) {
      record.fields.push_back(at_ < text_.size() && text_[at_] == '"' ? quoted_field() : plain_field());
      if (at_ == text_.size() || is_line_end()) break;
      ++at_;
    }
    if (at_ < text_.size()) skip_line_end();
    if (result_.mistakes.size() == mistakes) result_.records.push_back(std::move(record));
  }

  std::string plain_field() {
    const std::size_t begin = at_;
    while (!is_field_end()) ++at_;
    const std::string_view field = text_.substr(begin, at_ - begin);
    if (field.find('"') != std::string_view::npos) misplaced_quote(field);
    return std::string(field);
  }

  std::string quoted_field() {
    const std::size_t begin = at_;
    const std::size_t first_line = line_;
    std::string field;
    while (true) {
      if (++at_ >= text_.size()) {
        result_.mistakes.push_back({first_line, MistakeKind::unterminated_quote});
        at_ = text_.size();
        return field;
      }
      if (text_[at_] == '"') {
        if (at_ + 1 == text_.size() || text_[at_ + 1] != '"') break;
        ++at_;
      } else if (text_[at_] == '\n' || (text_[at_] == '\r' && !text_.substr(at_).starts_with("\r\n"))) {
        ++line_;
      }
      field += text_[at_];
    }
    ++at_;
    if (is_field_end()) return field;
    while (!is_field_end()) ++at_;
    misplaced_quote(text_.substr(begin, at_ - begin));
    return field;
  }

  void misplaced_quote(std::string_view field) {
    result_.mistakes.push_back({line_, MistakeKind::misplaced_quote, {std::string(field)}});
  }

  std::string_view text_;
  char separator_;
  std::size_t line_;
  std::size_t at_ = 0;
  CsvRecords result_;
};

bool needs_quotes(const std::string& field) { return field.find_first_of(",\"\r\n\t") != std::string::npos; }

}  // namespace

CsvRecords parse_csv(std::string_view text, char separator, std::size_t first_line, const Progress& progress) {
  return CsvParser(text, separator, first_line).parse(progress);
}

CsvRecords read_csv(std::string_view bytes, const Progress& progress) {
  std::size_t invalid_line = 0;
  const std::optional<std::string> text = try_decode(bytes, invalid_line);
  if (!text) return {{}, {{invalid_line, MistakeKind::not_text}}};
  const std::string_view first_line = std::string_view(*text).substr(0, text->find_first_of("\r\n"));
  return parse_csv(*text, first_line.find('\t') != std::string_view::npos ? '\t' : ',', 1, progress);
}

void append_csv(std::string& text, const std::vector<std::string>& fields, std::string_view line_end) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) text += ',';
    // A record of one empty field would be an empty line, which does not count.
    const bool quoted = fields[i].empty() ? fields.size() == 1 : needs_quotes(fields[i]);
    if (quoted) text += '"';
    for (const char unit : fields[i]) text.append(unit == '"' ? 2 : 1, unit);
    if (quoted) text += '"';
  }
  text += line_end;
}

}  // namespace workbench::schedule
