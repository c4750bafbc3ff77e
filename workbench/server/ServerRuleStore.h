#pragma once

#include <memory>

#include "ConnectionString.h"
#include "OdbcApi.h"
#include "RuleStore.h"
#include "ServerDialect.h"

namespace workbench {

struct ServerStoreOptions {
  /// What a new store is filled with.
  StoreContent first_content{};
  /// Whether a store is created where there is none; if not, opening it fails with `missing`.
  bool may_create = true;
  const ServerDialect& dialect = postgres();
  /// The functions of ODBC; null: the system's.
  const odbc::OdbcApi* api = nullptr;
  /// What a new store is filled with instead of `first_content`. Then a schema that holds a store fails with `exists`.
  const StoreCopy* copied = nullptr;
};

/// Opens the store in the current schema of this connection. Where the schema has none, its tables are created and
/// filled in one transaction; tables of an older version are brought to this one. Tables that are not ours, that a
/// newer version created or that are in a database without UTF-8 fail with `foreign` or `newer` and are not touched. A
/// user who may only read opens it for reading, and each change then fails with `read_only`. After the connection was
/// lost, the next call opens another. Throws `StoreError`, or `odbc::ConnectionStringError` for options that the server
/// does not have.
std::unique_ptr<RuleStore> open_server_store(const odbc::ConnectionString& options,
                                             const ServerStoreOptions& settings = {});

/// Which store a connection string leads to, for titles and messages: it holds the server, the port, the database and
/// the user, and how the connection is encrypted where that is weaker than it should be.
std::wstring describe_server_store(const odbc::ConnectionString& options);

}  // namespace workbench
