#include "OdbcConnection.h"

#include "OdbcError.h"

namespace workbench::odbc {

namespace {

SQLPOINTER number(SQLULEN value) { return reinterpret_cast<SQLPOINTER>(value); }

OdbcHandle create_environment(const OdbcApi& api) {
  OdbcHandle environment(api, SQL_HANDLE_ENV, SQL_HANDLE_ENV, nullptr);
  environment.check(api.set_environment_attribute(environment.get(), SQL_ATTR_ODBC_VERSION, number(SQL_OV_ODBC3), 0),
                    "SQLSetEnvAttr");
  return environment;
}

/// Whether the failure says that there is no driver of this name. One manager of drivers has a state of its own for a
/// driver that it does not know; another has only the state of a warning.
bool says_no_driver(const OdbcError& error) {
  return error.state() == "IM002" || error.state() == "IM003" || error.state() == "01000";
}

void connect(const OdbcHandle& connection, const std::wstring& string) {
  const SQLRETURN code =
      connection.api().connect(connection.get(), nullptr, units(string), static_cast<SQLSMALLINT>(string.size()),
                               nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  try {
    connection.check(code, "SQLDriverConnect");
  } catch (const OdbcError& error) {
    if (!error.state().empty()) throw;
    // Every driver says why it fails. A manager of drivers that does not know the driver or the data source may not.
    throw OdbcError("IM002", error.native(), error.what());
  }
}

void connect_first(const OdbcHandle& connection, const std::vector<ConnectionString>& attempts) {
  for (const ConnectionString& attempt : attempts) {
    try {
      return connect(connection, attempt.text());
    } catch (const OdbcError& error) {
      if (&attempt == &attempts.back() || !says_no_driver(error)) throw;
    }
  }
}

}  // namespace

OdbcConnection::OdbcConnection(const OdbcApi& api, const ConnectionString& options, const DriverProfile& profile,
                               std::chrono::seconds login_timeout)
    : environment_(create_environment(api)), connection_(api, SQL_HANDLE_DBC, SQL_HANDLE_ENV, environment_.get()) {
  connection_.check(api.set_connection_attribute(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                                                 number(static_cast<SQLULEN>(login_timeout.count())), SQL_IS_UINTEGER),
                    "SQLSetConnectAttr");
  connect_first(connection_, connection_attempts(options, profile));
}

OdbcConnection::~OdbcConnection() {
  // A driver does not disconnect while a transaction is open.
  if (!usable_) end_transaction(SQL_ROLLBACK);
  connection_.api().disconnect(connection_.get());
}

OdbcStatement OdbcConnection::prepare(const std::wstring& sql) const {
  return {connection_.api(), connection_.get(), sql};
}

void OdbcConnection::execute(const std::wstring& sql) const {
  const OdbcHandle statement(connection_.api(), SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection_.get());
  const SQLRETURN code =
      connection_.api().execute_directly(statement.get(), units(sql), static_cast<SQLINTEGER>(sql.size()));
  if (code != SQL_NO_DATA) statement.check(code, "SQLExecDirect");
}

bool OdbcConnection::is_lost() const noexcept {
  SQLUINTEGER lost = SQL_CD_FALSE;
  const SQLRETURN code = connection_.api().get_connection_attribute(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &lost,
                                                                    SQL_IS_UINTEGER, nullptr);
  return SQL_SUCCEEDED(code) && lost == SQL_CD_TRUE;
}

SQLRETURN OdbcConnection::set_automatic_commit(bool on) const noexcept {
  return connection_.api().set_connection_attribute(
      connection_.get(), SQL_ATTR_AUTOCOMMIT, number(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER);
}

SQLRETURN OdbcConnection::end_transaction(SQLSMALLINT how) const noexcept {
  return connection_.api().end_transaction(SQL_HANDLE_DBC, connection_.get(), how);
}

OdbcTransaction::OdbcTransaction(OdbcConnection& connection) : connection_(connection) {
  const SQLRETURN code = connection_.set_automatic_commit(false);
  if (!SQL_SUCCEEDED(code)) connection_.usable_ = false;
  connection_.connection_.check(code, "SQLSetConnectAttr");
}

OdbcTransaction::~OdbcTransaction() {
  if (!committed_ && !SQL_SUCCEEDED(connection_.end_transaction(SQL_ROLLBACK))) connection_.usable_ = false;
  if (!SQL_SUCCEEDED(connection_.set_automatic_commit(true))) connection_.usable_ = false;
}

void OdbcTransaction::commit() {
  connection_.connection_.check(connection_.end_transaction(SQL_COMMIT), "SQLEndTran");
  committed_ = true;
}

}  // namespace workbench::odbc
