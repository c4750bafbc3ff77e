#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "Record.h"

namespace snagtrap {

/// Writes JSON as UTF-8. The caller keeps objects balanced and names every value inside one.
class JsonWriter {
 public:
  static constexpr std::size_t unlimited = static_cast<std::size_t>(-1);

  /// From now on a text longer than `limit` UTF-16 units is cut and ends in "...".
  void limit_texts(std::size_t limit) noexcept { text_limit_ = limit; }

  void begin_object();
  void end_object();
  void name(std::wstring_view name);
  /// Any UTF-16: what is no Unicode (a lone surrogate) is escaped, so that it can be read back.
  void text(std::wstring_view text);
  /// A value whose JSON is already known, such as a number.
  void literal(std::string_view json);
  void integer(long long value);

  const std::string& json() const noexcept { return json_; }

 private:
  void separate();
  void quoted(std::wstring_view text);

  std::string json_;
  std::size_t text_limit_ = unlimited;
  bool needs_comma_ = false;
};

/// Writes the record as an object with a member for each field. Numbers of up to 32 bits and floating-point numbers
/// are numbers; what a reader of JSON could round (64 bits, dates, currency) and addresses are texts; empty and null
/// are null; an inner record is an object.
void write_record(JsonWriter& json, const Record& record);

/// The value as a person reads it; the same text as in the JSON, without quotes.
std::wstring readable(const VARIANT& value);

}  // namespace snagtrap
