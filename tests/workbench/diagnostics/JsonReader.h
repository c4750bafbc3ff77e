#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace snagtrap_test {

/// A JSON value as read back.
struct Json {
  enum class Kind { null, boolean, number, text, object };

  Kind kind = Kind::null;
  std::string number;  ///< as it was spelled; "true" or "false" for a boolean
  std::wstring text;
  std::vector<std::pair<std::wstring, Json>> members;

  /// The member of that name; a null value when there is none.
  const Json& operator[](std::wstring_view name) const;
  bool has(std::wstring_view name) const;
};

/// Reads one JSON value, as strictly as the standard words it: UTF-8 without overlong forms and surrogates, no control
/// characters in texts, no names twice in an object, nothing behind the value. Knows no arrays: the log has none.
/// Throws `std::runtime_error` with the place of the mistake.
Json read_json(std::string_view text);

/// The lines of a log, each read as JSON.
std::vector<Json> read_json_lines(std::string_view text);

}  // namespace snagtrap_test
