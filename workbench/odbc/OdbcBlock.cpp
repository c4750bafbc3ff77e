#include "OdbcBlock.h"

#include <algorithm>

#include "OdbcError.h"

namespace workbench::odbc {

OdbcBlock::OdbcBlock(const OdbcHandle& statement, const std::vector<std::size_t>& longest_texts) {
  const OdbcApi& api = statement.api();
  const auto set = [&](SQLINTEGER attribute, SQLPOINTER value) {
    statement.check(api.set_statement_attribute(statement.get(), attribute, value, 0), "SQLSetStmtAttr");
  };
  set(SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(most_rows));
  set(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_);
  set(SQL_ATTR_ROW_STATUS_PTR, states_.data());
  for (const std::size_t longest : longest_texts) columns_.push_back({longest});
  SQLUSMALLINT number = 0;
  for (Column& column : columns_) {
    SQLPOINTER values = nullptr;
    if (column.longest_text == 0) {
      column.integers.resize(most_rows);
      values = column.integers.data();
    } else {
      column.texts.resize(most_rows * (column.longest_text + 1));
      values = column.texts.data();
    }
    const auto size = static_cast<SQLLEN>((column.longest_text + 1) * sizeof(wchar_t));
    statement.check(
        api.bind_column(statement.get(), ++number, column.longest_text == 0 ? SQL_C_SBIGINT : SQL_C_WCHAR, values,
                        column.longest_text == 0 ? SQLLEN{sizeof(std::int64_t)} : size, column.sizes.data()),
        "SQLBindCol");
  }
}

bool OdbcBlock::fetch(const OdbcHandle& statement) {
  if (row_ + 1 < fetched_) {
    ++row_;
    return true;
  }
  drop_rows();
  const SQLRETURN code = statement.api().fetch(statement.get());
  if (code == SQL_NO_DATA) return false;
  statement.check(code, "SQLFetch");
  fetched_ = std::min<SQLULEN>(fetched_, most_rows);
  if (std::find(states_.begin(), states_.begin() + static_cast<std::ptrdiff_t>(fetched_), SQL_ROW_ERROR) !=
      states_.begin() + static_cast<std::ptrdiff_t>(fetched_))
    fail(statement.api(), SQL_HANDLE_STMT, statement.get(), "SQLFetch");
  return fetched_ > 0;
}

std::optional<std::int64_t> OdbcBlock::integer(std::size_t column) const {
  const Column& values = columns_.at(column);
  if (values.sizes[row_] == SQL_NULL_DATA) return std::nullopt;
  return values.integers.at(row_);
}

std::optional<std::wstring> OdbcBlock::text(std::size_t column) const {
  const Column& values = columns_.at(column);
  const SQLLEN size = values.sizes[row_];
  if (size == SQL_NULL_DATA) return std::nullopt;
  const std::size_t length = static_cast<std::size_t>(size) / sizeof(wchar_t);
  if (size < 0 || length > values.longest_text) throw OdbcError("01004", 0, "a text is longer than it may be");
  return std::wstring(values.texts.data() + row_ * (values.longest_text + 1), length);
}

}  // namespace workbench::odbc
