#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::odbc {

/// Why a connection string is refused. It never quotes the string, because any part of that may be a password.
class ConnectionStringError : public std::invalid_argument {
 public:
  enum class Reason {
    no_value,          ///< a part has no keyword or no =
    unclosed_brace,    ///< a value begins with { and has no } of its own
    text_after_brace,  ///< something follows the } of a value
    repeated_keyword,  ///< a keyword stands twice; drivers differ in which one counts
    unknown_keyword,   ///< a keyword that the kind of server does not have
  };

  /// `part` counts the parts between semicolons from 1.
  ConnectionStringError(Reason reason, int part);

  Reason reason() const noexcept { return reason_; }
  int part() const noexcept { return part_; }

 private:
  Reason reason_;
  int part_;
};

/// Keywords and values that say which server to connect to and how. Keywords are the same in any case.
class ConnectionString {
 public:
  ConnectionString() = default;

  /// Reads `keyword=value;...`. A value in braces ends at the first } that is not doubled; others end at a semicolon.
  /// Throws `ConnectionStringError`.
  explicit ConnectionString(std::wstring_view text);

  /// The value of a keyword, if it stands in the string.
  std::optional<std::wstring> find(std::wstring_view keyword) const;

  /// Gives a keyword this value, in its present position or at the end.
  void set(std::wstring_view keyword, std::wstring_view value);

  /// Removes a keyword and returns the value that it had, if any.
  std::optional<std::wstring> take(std::wstring_view keyword);

  /// The keywords in their order.
  std::vector<std::wstring> keywords() const;

  /// The string that gives the same keywords and values again. A value that could be taken for something else stands in
  /// braces, with each } doubled.
  std::wstring text() const;

 private:
  struct Entry {
    std::wstring keyword;
    std::wstring value;
  };

  std::vector<Entry>::iterator locate(std::wstring_view keyword);

  std::vector<Entry> entries_;
};

}  // namespace workbench::odbc
