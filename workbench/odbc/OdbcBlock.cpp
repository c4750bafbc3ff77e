#include "OdbcBlock.h"

#include <algorithm>
#include <span>

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
  const auto bind = [&](Column& column, SQLSMALLINT type, SQLPOINTER values, std::size_t size) {
    statement.check(
        api.bind_column(statement.get(), ++number, type, values, static_cast<SQLLEN>(size), column.sizes.data()),
        "SQLBindCol");
  };
  for (Column& column : columns_) {
    if (column.longest_text == 0) {
      column.integers.resize(most_rows);
      bind(column, SQL_C_SBIGINT, column.integers.data(), sizeof(std::int64_t));
    } else {
      const std::size_t room = column.longest_text + 1;
      column.texts.resize(most_rows * room);
      bind(column, SQL_C_WCHAR, column.texts.data(), room * sizeof(wchar_t));
    }
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
  if (std::ranges::count(std::span(states_).first(fetched_), SQL_ROW_ERROR) > 0)
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
