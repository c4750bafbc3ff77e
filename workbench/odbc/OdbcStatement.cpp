#include "OdbcStatement.h"

#include <array>

#include "OdbcError.h"

namespace workbench::odbc {

namespace {

/// Longer texts are given as such that have no greatest length.
constexpr std::size_t longest_short_text = 2000;

bool is_well_formed(std::wstring_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned unit = text[i];
    if (unit == 0 || (unit & 0xFC00) == 0xDC00) return false;
    if ((unit & 0xFC00) != 0xD800) continue;
    if (++i == text.size() || (text[i] & 0xFC00) != 0xDC00) return false;
  }
  return true;
}

}  // namespace

OdbcStatement::OdbcStatement(const OdbcApi& api, SQLHANDLE connection, const std::wstring& sql)
    : handle_(api, SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection) {
  handle_.check(api.prepare(handle_.get(), units(sql), static_cast<SQLINTEGER>(sql.size())), "SQLPrepare");
}

OdbcStatement::Parameter& OdbcStatement::parameter(int number) {
  const auto index = static_cast<std::size_t>(number - 1);
  if (parameters_.size() <= index) parameters_.resize(index + 1);
  if (!parameters_[index]) parameters_[index] = std::make_unique<Parameter>();
  return *parameters_[index];
}

OdbcStatement& OdbcStatement::bind(int number, std::wstring_view text) {
  if (!is_well_formed(text)) throw OdbcError("22021", 0, "a text that is not well formed cannot be a parameter");
  Parameter& value = parameter(number);
  value.text = text;
  value.size = static_cast<SQLLEN>(text.size() * sizeof(wchar_t));
  const SQLSMALLINT type = text.size() > longest_short_text ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
  const SQLULEN greatest = text.empty() ? 1 : text.size();
  handle_.check(
      handle_.api().bind_parameter(handle_.get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT, SQL_C_WCHAR, type,
                                   greatest, 0, units(value.text), value.size, &value.size),
      "SQLBindParameter");
  return *this;
}

OdbcStatement& OdbcStatement::bind(int number, std::int64_t integer) {
  Parameter& value = parameter(number);
  value.integer = integer;
  value.size = sizeof value.integer;
  handle_.check(handle_.api().bind_parameter(handle_.get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                             SQL_C_SBIGINT, SQL_BIGINT, 0, 0, &value.integer, 0, &value.size),
                "SQLBindParameter");
  return *this;
}

OdbcStatement& OdbcStatement::bind_null(int number) {
  Parameter& value = parameter(number);
  value.size = SQL_NULL_DATA;
  handle_.check(handle_.api().bind_parameter(handle_.get(), static_cast<SQLUSMALLINT>(number), SQL_PARAM_INPUT,
                                             SQL_C_WCHAR, SQL_WVARCHAR, 1, 0, nullptr, 0, &value.size),
                "SQLBindParameter");
  return *this;
}

std::int64_t OdbcStatement::execute() {
  if (has_rows_) handle_.check(handle_.api().free_statement(handle_.get(), SQL_CLOSE), "SQLFreeStmt");
  has_rows_ = false;
  if (block_) block_->drop_rows();
  const SQLRETURN code = handle_.api().execute(handle_.get());
  if (code == SQL_NO_DATA) return 0;
  handle_.check(code, "SQLExecute");
  has_rows_ = true;
  SQLLEN rows = -1;
  handle_.check(handle_.api().count_rows(handle_.get(), &rows), "SQLRowCount");
  return rows;
}

OdbcStatement& OdbcStatement::fetch_in_blocks(const std::vector<std::size_t>& longest_texts) {
  block_ = std::make_unique<OdbcBlock>(handle_, longest_texts);
  return *this;
}

bool OdbcStatement::fetch() {
  if (block_) return block_->fetch(handle_);
  const SQLRETURN code = handle_.api().fetch(handle_.get());
  if (code == SQL_NO_DATA) return false;
  handle_.check(code, "SQLFetch");
  return true;
}

std::optional<std::int64_t> OdbcStatement::try_integer(int column) {
  if (block_) return block_->integer(static_cast<std::size_t>(column));
  std::int64_t value = 0;
  SQLLEN size = 0;
  handle_.check(handle_.api().get_data(handle_.get(), static_cast<SQLUSMALLINT>(column + 1), SQL_C_SBIGINT, &value,
                                       sizeof value, &size),
                "SQLGetData");
  return size == SQL_NULL_DATA ? std::nullopt : std::optional(value);
}

std::optional<std::wstring> OdbcStatement::try_text(int column) {
  if (block_) return block_->text(static_cast<std::size_t>(column));
  std::wstring text;
  std::array<wchar_t, 512> part{};
  for (;;) {
    SQLLEN size = 0;  // of what is left, in bytes, or unknown
    const SQLRETURN code = handle_.api().get_data(handle_.get(), static_cast<SQLUSMALLINT>(column + 1), SQL_C_WCHAR,
                                                  part.data(), sizeof part, &size);
    if (code == SQL_NO_DATA) return text;
    handle_.check(code, "SQLGetData");
    if (size == SQL_NULL_DATA) return std::nullopt;
    const bool is_whole = size >= 0 && static_cast<std::size_t>(size) < sizeof part;
    text.append(part.data(), is_whole ? static_cast<std::size_t>(size) / sizeof(wchar_t) : part.size() - 1);
    if (is_whole) return text;
  }
}

std::int64_t OdbcStatement::integer(int column) {
  const std::optional<std::int64_t> value = try_integer(column);
  if (!value) throw OdbcError("22002", 0, "column " + std::to_string(column) + " is null");
  return *value;
}

std::wstring OdbcStatement::text(int column) {
  std::optional<std::wstring> value = try_text(column);
  if (!value) throw OdbcError("22002", 0, "column " + std::to_string(column) + " is null");
  return *std::move(value);
}

}  // namespace workbench::odbc
