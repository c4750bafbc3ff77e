#include "Reports.h"

#include <algorithm>
#include <cstdio>

#include "TextEncoding.h"

namespace test_support {
namespace {

std::string message_of(const RecordedCommand& report) {
  std::string text = base::to_utf8(field_text(report, L"Description") + field_text(report, L"$Message"));
  const RecordedField* hresult = find_field(report, L"HRESULT");
  if (!hresult) return text;
  char code[16] = {};
  std::snprintf(code, sizeof code, "%08lx", static_cast<unsigned long>(hresult->number & 0xFFFFFFFF));
  return text + code;
}

std::string report_text(const RecordedCommand& report) {
  return base::to_utf8(field_text(report, L"$Type")) + ' ' + message_of(report) + " | " +
         base::to_utf8(field_text(report, L"File") + L':' + field_text(report, L"Line") + L' ' +
                       field_text(report, L"Function"));
}

/// Puts "*" where a number follows `mark`.
void hide_number_after(const std::string& mark, std::string& text) {
  const std::size_t found = text.rfind(mark);
  if (found == std::string::npos) return;
  const std::size_t start = found + mark.size();
  const std::size_t end = std::min(text.find_first_not_of("0123456789", start), text.size());
  text.replace(start, end - start, "*");
}

}  // namespace

std::vector<std::string> reports(const Recorder& recorder) {
  std::vector<std::string> texts;
  for (const RecordedCommand& report : recorder.commands(L"PROCESS")) texts.push_back(report_text(report));
  return texts;
}

std::vector<std::string> reports_without_lines(const Recorder& recorder) {
  std::vector<std::string> texts = reports(recorder);
  for (std::string& text : texts) {
    hide_number_after("LINE - ", text);
    hide_number_after(":", text);
  }
  return texts;
}

}  // namespace test_support
