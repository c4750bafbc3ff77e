#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "Record.h"

namespace snagtrap {

inline constexpr std::size_t unlimited = static_cast<std::size_t>(-1);

/// The text as a JSON string in UTF-8. A text longer than `limit` UTF-16 units is cut and ends in "..."; a lone
/// surrogate becomes U+FFFD, since a reader may refuse a line that holds one.
std::string text_json(std::wstring_view text, std::size_t limit = unlimited);

/// The record as a JSON object with a member for each field; texts are cut as in `text_json`. Numbers of up to 32 bits
/// and floating-point numbers are numbers; addresses and what a reader of JSON could round (64 bits, dates, currency)
/// are texts; empty and null are null; an inner record is an object.
std::string record_json(const Record& record, std::size_t text_limit = unlimited);

/// The value as a person reads it: the same text as in the JSON, without quotes.
std::wstring readable(const VARIANT& value);

/// Joins members, whose values are already JSON, to a JSON object. The JSON library's own objects cannot be used: their
/// destructor allocates, which would end the host when memory has run out.
class JsonObject {
 public:
  void add(std::wstring_view name, std::string_view value);
  std::string json() const { return '{' + members_ + '}'; }

 private:
  std::string members_;
};

}  // namespace snagtrap
