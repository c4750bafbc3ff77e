#include "MemoryOdbc.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <utility>

#include "TextEncoding.h"

namespace test_support {

namespace {

MemoryOdbc* in_memory = nullptr;

/// What the driver keeps of its only statement.
struct Statement {
  std::vector<std::pair<const void*, const SQLLEN*>> parameters;
  std::vector<SQLSMALLINT> types;
  std::deque<MemoryOdbc::Row> rows;
  MemoryOdbc::Row row;
  std::size_t done = 0;  // code units of the column that is being read
  int column = 0;
} statement;

std::wstring wide(const SQLWCHAR* text, int length) {
  return {reinterpret_cast<const wchar_t*>(text), static_cast<std::size_t>(length)};
}

SQLRETURN SQL_API allocate(SQLSMALLINT, SQLHANDLE, SQLHANDLE* handle) {
  *handle = in_memory;
  statement = {};
  return SQL_SUCCESS;
}

SQLRETURN SQL_API release(SQLSMALLINT, SQLHANDLE) { return SQL_SUCCESS; }

SQLRETURN SQL_API diagnostic(SQLSMALLINT, SQLHANDLE, SQLSMALLINT record, SQLWCHAR* state, SQLINTEGER* native,
                             SQLWCHAR* text, SQLSMALLINT size, SQLSMALLINT* length) {
  if (record > 2 || !in_memory->has_diagnostics) return SQL_NO_DATA;
  std::ranges::copy(base::from_utf8(record == 1 ? in_memory->no_driver : "01S00"), state);
  state[5] = 0;
  *native = 100 + record;
  // Cut, and not ended, as some drivers leave a text that is too long.
  std::fill_n(text, size, static_cast<SQLWCHAR>(L'x'));
  *length = size;
  return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN SQL_API set_environment(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }

SQLRETURN SQL_API set_connection(SQLHDBC, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  if (attribute == SQL_ATTR_AUTOCOMMIT)
    in_memory->log.push_back(reinterpret_cast<SQLULEN>(value) == SQL_AUTOCOMMIT_ON ? L"automatic" : L"begin");
  return SQL_SUCCESS;
}

SQLRETURN SQL_API get_connection(SQLHDBC, SQLINTEGER, SQLPOINTER value, SQLINTEGER, SQLINTEGER*) {
  const SQLUINTEGER lost = in_memory->is_lost ? SQL_CD_TRUE : SQL_CD_FALSE;
  std::memcpy(value, &lost, sizeof lost);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API connect(SQLHDBC, SQLHWND, SQLWCHAR* string, SQLSMALLINT length, SQLWCHAR*, SQLSMALLINT, SQLSMALLINT*,
                          SQLUSMALLINT) {
  in_memory->connected.push_back(wide(string, length));
  const bool missing = std::ranges::any_of(in_memory->missing_drivers, [&](const std::wstring& name) {
    return in_memory->connected.back().starts_with(L"Driver=" + name + L";");
  });
  return missing ? SQL_ERROR : SQL_SUCCESS;
}

SQLRETURN SQL_API disconnect(SQLHDBC) {
  in_memory->log.emplace_back(L"disconnect");
  return SQL_SUCCESS;
}

SQLRETURN SQL_API end_transaction(SQLSMALLINT, SQLHANDLE, SQLSMALLINT how) {
  in_memory->log.emplace_back(how == SQL_COMMIT ? L"commit" : L"rollback");
  return SQL_SUCCESS;
}

SQLRETURN SQL_API prepare(SQLHSTMT, SQLWCHAR* sql, SQLINTEGER length) {
  in_memory->log.push_back(wide(sql, length));
  return SQL_SUCCESS;
}

SQLRETURN SQL_API bind(SQLHSTMT, SQLUSMALLINT number, SQLSMALLINT, SQLSMALLINT type, SQLSMALLINT, SQLULEN, SQLSMALLINT,
                       SQLPOINTER value, SQLLEN, SQLLEN* size) {
  statement.parameters.resize(std::max<std::size_t>(statement.parameters.size(), number));
  statement.types.resize(statement.parameters.size());
  statement.parameters[number - 1u] = {value, size};
  statement.types[number - 1u] = type;
  return SQL_SUCCESS;
}

std::wstring read_parameter(std::size_t index) {
  const auto& [value, size] = statement.parameters[index];
  if (*size == SQL_NULL_DATA) return L"null";
  if (statement.types[index] == SQL_C_WCHAR)
    return {static_cast<const wchar_t*>(value), static_cast<std::size_t>(*size) / sizeof(wchar_t)};
  std::int64_t integer = 0;
  std::memcpy(&integer, value, sizeof integer);
  return std::to_wstring(integer);
}

SQLRETURN SQL_API execute(SQLHSTMT) {
  for (std::size_t i = 0; i < statement.parameters.size(); ++i) in_memory->log.push_back(read_parameter(i));
  statement.rows.assign(in_memory->rows.begin(), in_memory->rows.end());
  return SQL_SUCCESS;
}

SQLRETURN SQL_API execute_directly(SQLHSTMT handle, SQLWCHAR* sql, SQLINTEGER length) {
  return prepare(handle, sql, length);
}

SQLRETURN SQL_API count_rows(SQLHSTMT, SQLLEN* count) {
  *count = static_cast<SQLLEN>(in_memory->rows.size());
  return SQL_SUCCESS;
}

SQLRETURN SQL_API fetch(SQLHSTMT) {
  if (statement.rows.empty()) return SQL_NO_DATA;
  statement.row = statement.rows.front();
  statement.rows.pop_front();
  statement.column = 0;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API get_data(SQLHSTMT, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER buffer, SQLLEN room,
                           SQLLEN* size) {
  if (std::exchange(statement.column, column) != column) statement.done = 0;
  const std::optional<std::wstring>& value = statement.row[column - 1u];
  if (!value) {
    *size = SQL_NULL_DATA;
    return SQL_SUCCESS;
  }
  if (type == SQL_C_SBIGINT) {
    const std::int64_t integer = std::stoll(*value);
    std::memcpy(buffer, &integer, sizeof integer);
    return SQL_SUCCESS;
  }
  const std::size_t left = value->size() - statement.done;
  const std::size_t part = std::min(left, static_cast<std::size_t>(room) / sizeof(wchar_t) - 1);
  auto* text = static_cast<wchar_t*>(buffer);
  std::copy_n(value->data() + statement.done, part, text);
  text[part] = L'\0';
  statement.done += part;
  *size = static_cast<SQLLEN>(left * sizeof(wchar_t));
  return part == left ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

SQLRETURN SQL_API free_statement(SQLHSTMT, SQLUSMALLINT) {
  in_memory->log.emplace_back(L"close");
  return SQL_SUCCESS;
}

}  // namespace

MemoryOdbc::MemoryOdbc()
    : api_{&allocate,       &release,          &diagnostic,      &set_environment, &set_connection,
           &connect,        &disconnect,       &end_transaction, &prepare,         &bind,
           &execute,        &execute_directly, &count_rows,      &fetch,           &get_data,
           &free_statement, &get_connection} {
  in_memory = this;
}

MemoryOdbc::~MemoryOdbc() { in_memory = nullptr; }

}  // namespace test_support
