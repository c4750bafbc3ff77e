#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "OdbcHandle.h"

namespace workbench::odbc {

/// The rows of a statement, which the driver writes in blocks: one call for many rows instead of one for each value.
class OdbcBlock {
 public:
  /// Has the driver of this statement write its columns here. `longest_texts` gives for each column how many code units
  /// its texts have at most; 0: it holds integers.
  OdbcBlock(const OdbcHandle& statement, const std::vector<std::size_t>& longest_texts);
  OdbcBlock(const OdbcBlock&) = delete;
  OdbcBlock& operator=(const OdbcBlock&) = delete;

  /// Goes to the next row and returns whether there is one.
  bool fetch(const OdbcHandle& statement);

  /// Forgets the rows, because the statement runs again.
  void drop_rows() noexcept { row_ = fetched_ = 0; }

  // Of the current row; nothing when the value is null:

  std::optional<std::int64_t> integer(std::size_t column) const;
  /// Throws `OdbcError` of state 01004 for a text that is longer than it may be.
  std::optional<std::wstring> text(std::size_t column) const;

 private:
  static constexpr std::size_t most_rows = 256;

  struct Column {
    std::size_t longest_text;
    std::vector<std::int64_t> integers{};
    std::vector<wchar_t> texts{};  // each with its null
    std::vector<SQLLEN> sizes = std::vector<SQLLEN>(most_rows);
  };

  std::vector<Column> columns_;
  std::vector<SQLUSMALLINT> states_ = std::vector<SQLUSMALLINT>(most_rows);
  SQLULEN fetched_ = 0;
  SQLULEN row_ = 0;
};

}  // namespace workbench::odbc
