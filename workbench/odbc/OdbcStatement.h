#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OdbcBlock.h"
#include "OdbcHandle.h"

namespace workbench::odbc {

/// One prepared statement with its parameters. It must not outlive its connection. Failures throw `OdbcError`.
class OdbcStatement {
 public:
  /// Prepares `sql` on this connection handle; every value stands as a ? in it.
  OdbcStatement(const OdbcApi& api, SQLHANDLE connection, const std::wstring& sql);

  /// Keeps a value for the parameter with this number, from 1. A driver would corrupt text that is not well-formed
  /// UTF-16 or that holds a null, so such text is refused with the state 22021.
  OdbcStatement& bind(int number, std::wstring_view text);
  OdbcStatement& bind(int number, std::int64_t integer);
  OdbcStatement& bind_null(int number);

  /// Runs the statement with the kept values. Rows of an earlier run are dropped. Returns the number of rows that it
  /// changed, or -1 when the driver does not know.
  std::int64_t execute();

  /// From now on the driver gives its rows in blocks; see `OdbcBlock`. Worth it for more than a few rows.
  OdbcStatement& fetch_in_blocks(const std::vector<std::size_t>& longest_texts);

  /// Goes to the next row and returns whether there is one.
  bool fetch();

  /// Columns of the current row count from 0. Those of a row are read once each, in ascending order.
  std::int64_t integer(int column);
  std::wstring text(int column);
  /// Nothing when the value is null.
  std::optional<std::int64_t> try_integer(int column);
  std::optional<std::wstring> try_text(int column);

 private:
  /// A value at an address that stays, because the driver reads it when the statement runs.
  struct Parameter {
    std::wstring text;
    std::int64_t integer = 0;
    SQLLEN size = 0;
  };

  Parameter& parameter(int number);

  OdbcHandle handle_;
  std::vector<std::unique_ptr<Parameter>> parameters_;
  std::unique_ptr<OdbcBlock> block_;
  bool has_rows_ = false;
};

}  // namespace workbench::odbc
