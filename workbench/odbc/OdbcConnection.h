#pragma once

#include <chrono>
#include <string>

#include "DriverProfile.h"
#include "OdbcHandle.h"
#include "OdbcStatement.h"

namespace workbench::odbc {

/// A connection to a server. It belongs to one thread at a time. Failures throw `OdbcError`.
class OdbcConnection {
 public:
  /// Connects as `options` say; a string that names neither a driver nor a data source is tried with each name of the
  /// driver. `login_timeout` is how long the driver may wait for the server, in whole seconds. Nothing is asked of the
  /// user.
  OdbcConnection(const OdbcApi& api, const ConnectionString& options, const DriverProfile& profile,
                 std::chrono::seconds login_timeout);
  ~OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  OdbcStatement prepare(const std::wstring& sql) const;

  /// Runs statements that take no parameters, and drops their rows.
  void execute(const std::wstring& sql) const;

  /// Whether the driver knows that the connection has ended. Some errors that come of it do not say so.
  bool is_lost() const noexcept;

  /// False once a transaction could not be ended: the next call needs another connection.
  bool is_usable() const noexcept { return usable_; }

 private:
  friend class OdbcTransaction;

  SQLRETURN set_automatic_commit(bool on) const noexcept;
  SQLRETURN end_transaction(SQLSMALLINT how) const noexcept;

  OdbcHandle environment_;
  OdbcHandle connection_;
  bool usable_ = true;
};

/// What one connection changes from now to `commit`. Without that everything is as it was.
class OdbcTransaction {
 public:
  explicit OdbcTransaction(OdbcConnection& connection);
  ~OdbcTransaction();
  OdbcTransaction(const OdbcTransaction&) = delete;
  OdbcTransaction& operator=(const OdbcTransaction&) = delete;

  /// Returns once the server has acknowledged the change. When it throws because the connection was lost, the change
  /// may have happened.
  void commit();

 private:
  OdbcConnection& connection_;
  bool committed_ = false;
};

}  // namespace workbench::odbc
