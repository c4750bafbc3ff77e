#pragma once

#include <memory>
#include <string>

#include "OdbcConnection.h"
#include "OdbcError.h"
#include "ServerDialect.h"
#include "StoreError.h"

namespace workbench {

/// The store's connection, which is opened again after it was lost. Failures throw `StoreError` about the store.
class ServerSession {
 public:
  /// Remembers what to connect to. Throws `odbc::ConnectionStringError` for options that the server does not have.
  ServerSession(const odbc::OdbcApi& api, odbc::ConnectionString options, const ServerDialect& dialect);

  const ServerDialect& sql() const noexcept { return dialect_; }

  /// Which store this is, without what only the user may know.
  const std::wstring& description() const noexcept { return description_; }

  /// Runs `body` on a connection. What ODBC refuses becomes the store's error, and a connection that may have been lost
  /// is dropped, so that the next call opens another.
  template <class Body>
  auto call(const Body& body) {
    try {
      open();
      return body();
    } catch (const odbc::OdbcError& error) {
      refuse(error);
    }
  }

  /// Ends the connection; the next call opens another.
  void drop_connection() noexcept { connection_.reset(); }

  // Within a call:

  odbc::OdbcConnection& connection() { return *connection_; }
  odbc::OdbcStatement prepare(const std::wstring& sql) { return connection_->prepare(in_schema(sql)); }
  void execute(const std::wstring& sql) { connection_->execute(in_schema(sql)); }

  [[noreturn]] void fail(StoreErrorKind kind, const std::string& detail) const;

 private:
  void open();
  [[noreturn]] void refuse(const odbc::OdbcError& error);
  std::wstring in_schema(std::wstring sql) const;

  const odbc::OdbcApi& api_;
  odbc::ConnectionString options_;
  const ServerDialect& dialect_;
  std::wstring description_;
  std::wstring schema_;  // as it stands in a statement
  std::unique_ptr<odbc::OdbcConnection> connection_;
};

}  // namespace workbench
