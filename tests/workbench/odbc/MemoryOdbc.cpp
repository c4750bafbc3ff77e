#include "MemoryOdbc.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <utility>

#include "TextEncoding.h"

namespace test_support {

namespace {

MemoryOdbc* in_memory = nullptr;

/// Where a column is to be written, row by row.
struct BoundColumn {
  SQLSMALLINT type;
  char* values;
  SQLLEN room;  // of one value, in bytes
  SQLLEN* sizes;
};

/// What the driver keeps of a statement.
struct Statement {
  std::vector<BoundColumn> columns;
  std::size_t block = 1;  // how many rows a fetch gives
  SQLULEN* fetched = nullptr;
  SQLUSMALLINT* states = nullptr;
  std::wstring sql;
  std::string refused_state;  // with which the server refused it
  std::vector<std::pair<const void*, const SQLLEN*>> parameters;
  std::vector<SQLSMALLINT> types;
  std::deque<MemoryOdbc::Row> rows;
  std::size_t row_count = 0;
  MemoryOdbc::Row row;
  std::size_t done = 0;  // code units of the column that is being read
  int column = 0;
};
Statement& statement_of(SQLHSTMT handle) { return *static_cast<Statement*>(handle); }

std::wstring wide(const SQLWCHAR* text, int length) {
  return {reinterpret_cast<const wchar_t*>(text), static_cast<std::size_t>(length)};
}

SQLRETURN SQL_API allocate(SQLSMALLINT type, SQLHANDLE, SQLHANDLE* handle) {
  *handle = type == SQL_HANDLE_STMT ? static_cast<SQLHANDLE>(new Statement) : in_memory;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API release(SQLSMALLINT type, SQLHANDLE handle) {
  if (type == SQL_HANDLE_STMT) delete static_cast<Statement*>(handle);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API diagnostic(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLWCHAR* state,
                             SQLINTEGER* native, SQLWCHAR* text, SQLSMALLINT size, SQLSMALLINT* length) {
  if (record > 2 || !in_memory->has_diagnostics) return SQL_NO_DATA;
  std::string first = in_memory->no_driver;
  if (type == SQL_HANDLE_STMT && !statement_of(handle).refused_state.empty())
    first = statement_of(handle).refused_state;
  std::ranges::copy(base::from_utf8(record == 1 ? first : "01S00"), state);
  state[5] = 0;
  *native = 100 + record;
  // Cut, and not ended, as some drivers leave a text that is too long.
  std::fill_n(text, size, static_cast<SQLWCHAR>(L'x'));
  *length = size;
  return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN SQL_API set_environment(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }

SQLRETURN SQL_API set_connection(SQLHDBC, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  if (attribute != SQL_ATTR_AUTOCOMMIT) return SQL_SUCCESS;
  const bool begins = reinterpret_cast<SQLULEN>(value) == SQL_AUTOCOMMIT_OFF;
  in_memory->add_to_log(begins ? L"begin" : L"automatic");
  if (begins && in_memory->on_begin_of_transaction) in_memory->on_begin_of_transaction();
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
  in_memory->add_to_log(L"disconnect");
  if (in_memory->on_end_of_transaction) in_memory->on_end_of_transaction(false);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API end_transaction(SQLSMALLINT, SQLHANDLE, SQLSMALLINT how) {
  in_memory->add_to_log(how == SQL_COMMIT ? L"commit" : L"rollback");
  if (in_memory->on_end_of_transaction) in_memory->on_end_of_transaction(how == SQL_COMMIT);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API prepare(SQLHSTMT handle, SQLWCHAR* sql, SQLINTEGER length) {
  statement_of(handle).sql = wide(sql, length);
  in_memory->add_to_log(statement_of(handle).sql);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API bind(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT, SQLSMALLINT type, SQLSMALLINT, SQLULEN,
                       SQLSMALLINT, SQLPOINTER value, SQLLEN, SQLLEN* size) {
  Statement& statement = statement_of(handle);
  statement.parameters.resize(std::max<std::size_t>(statement.parameters.size(), number));
  statement.types.resize(statement.parameters.size());
  statement.parameters[number - 1u] = {value, size};
  statement.types[number - 1u] = type;
  return SQL_SUCCESS;
}

std::wstring read_parameter(const Statement& statement, std::size_t index) {
  const auto& [value, size] = statement.parameters[index];
  if (*size == SQL_NULL_DATA) return L"null";
  if (statement.types[index] == SQL_C_WCHAR)
    return {static_cast<const wchar_t*>(value), static_cast<std::size_t>(*size) / sizeof(wchar_t)};
  std::int64_t integer = 0;
  std::memcpy(&integer, value, sizeof integer);
  return std::to_wstring(integer);
}

SQLRETURN SQL_API execute(SQLHSTMT handle) {
  Statement& statement = statement_of(handle);
  std::vector<std::wstring> parameters;
  for (std::size_t i = 0; i < statement.parameters.size(); ++i) parameters.push_back(read_parameter(statement, i));
  for (const std::wstring& parameter : parameters) in_memory->add_to_log(parameter);
  try {
    const std::vector<MemoryOdbc::Row> rows =
        in_memory->on_execute ? in_memory->on_execute(statement.sql, parameters) : in_memory->rows;
    statement.rows.assign(rows.begin(), rows.end());
    statement.row_count = rows.size();
    return SQL_SUCCESS;
  } catch (const MemoryRefusal& refusal) {
    statement.refused_state = refusal.state;
    return SQL_ERROR;
  }
}

SQLRETURN SQL_API execute_directly(SQLHSTMT handle, SQLWCHAR* sql, SQLINTEGER length) {
  prepare(handle, sql, length);
  return in_memory->on_execute ? execute(handle) : SQLRETURN{SQL_SUCCESS};
}

SQLRETURN SQL_API count_rows(SQLHSTMT handle, SQLLEN* count) {
  *count = static_cast<SQLLEN>(statement_of(handle).row_count);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API set_statement(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  Statement& statement = statement_of(handle);
  if (attribute == SQL_ATTR_ROW_ARRAY_SIZE) statement.block = reinterpret_cast<std::size_t>(value);
  if (attribute == SQL_ATTR_ROWS_FETCHED_PTR) statement.fetched = static_cast<SQLULEN*>(value);
  if (attribute == SQL_ATTR_ROW_STATUS_PTR) statement.states = static_cast<SQLUSMALLINT*>(value);
  return SQL_SUCCESS;
}

SQLRETURN SQL_API bind_column(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT type, SQLPOINTER values, SQLLEN room,
                              SQLLEN* sizes) {
  statement_of(handle).columns.push_back({type, static_cast<char*>(values), room, sizes});
  return SQL_SUCCESS;
}

/// Writes a value, cut where it is too long. Returns false for a text that is no number where one is bound.
bool write(const std::optional<std::wstring>& value, const BoundColumn& column, std::size_t row) {
  if (!value) {
    column.sizes[row] = SQL_NULL_DATA;
    return true;
  }
  char* room = column.values + row * static_cast<std::size_t>(column.room);
  if (column.type == SQL_C_SBIGINT) {
    if (value->empty()) return false;
    const std::int64_t integer = std::stoll(*value);
    std::memcpy(room, &integer, sizeof integer);
    column.sizes[row] = sizeof integer;
    return true;
  }
  const std::size_t units = std::min(value->size(), static_cast<std::size_t>(column.room) / sizeof(wchar_t) - 1);
  std::memcpy(room, value->c_str(), units * sizeof(wchar_t));
  column.sizes[row] = static_cast<SQLLEN>(value->size() * sizeof(wchar_t));
  return true;
}

SQLRETURN fetch_block(Statement& statement) {
  *statement.fetched = 0;
  bool is_whole = true;
  for (std::size_t row = 0; row < statement.block && !statement.rows.empty(); ++row, ++*statement.fetched) {
    bool is_read = true;
    for (std::size_t i = 0; i < statement.columns.size(); ++i)
      is_read = write(statement.rows.front()[i], statement.columns[i], row) && is_read;
    statement.states[row] = is_read ? SQL_ROW_SUCCESS : SQL_ROW_ERROR;
    is_whole = is_whole && is_read;
    statement.rows.pop_front();
  }
  if (*statement.fetched == 0) return SQL_NO_DATA;
  return is_whole ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

SQLRETURN SQL_API fetch(SQLHSTMT handle) {
  Statement& statement = statement_of(handle);
  if (!statement.columns.empty()) return fetch_block(statement);
  if (statement.rows.empty()) return SQL_NO_DATA;
  statement.row = statement.rows.front();
  statement.rows.pop_front();
  statement.column = 0;
  return SQL_SUCCESS;
}

SQLRETURN SQL_API get_data(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER buffer, SQLLEN room,
                           SQLLEN* size) {
  Statement& statement = statement_of(handle);
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
  in_memory->add_to_log(L"close");
  return SQL_SUCCESS;
}

}  // namespace

MemoryOdbc::MemoryOdbc()
    : api_{&allocate,       &release,          &diagnostic,      &set_environment, &set_connection,
           &connect,        &disconnect,       &end_transaction, &prepare,         &bind,
           &execute,        &execute_directly, &count_rows,      &fetch,           &get_data,
           &free_statement, &get_connection,   &set_statement,   &bind_column} {
  in_memory = this;
}

MemoryOdbc::~MemoryOdbc() { in_memory = nullptr; }

void MemoryOdbc::add_to_log(std::wstring entry) {
  const std::scoped_lock lock(log_mutex_);
  log.push_back(std::move(entry));
}

}  // namespace test_support
