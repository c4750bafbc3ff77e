#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "ConnectionString.h"
#include "OdbcApi.h"
#include "RuleStore.h"
#include "ServerDialect.h"

namespace workbench {

/// Waits on the thread that called a store while the server is asked on another one.
class ServerWait {
 public:
  ServerWait() = default;
  ServerWait(const ServerWait&) = delete;
  ServerWait& operator=(const ServerWait&) = delete;
  virtual ~ServerWait() = default;

  /// Returns when the event is signalled or the time has passed; false when the user gives up. Called several times in
  /// one call of the store that reports its progress. It must not use the store.
  virtual bool wait(HANDLE event, std::chrono::milliseconds at_most);
};

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
  /// How long the server may be silent in a call before the connection is given up.
  std::chrono::milliseconds time_limit{30'000};
  /// How often the store looks by itself for changes of others; `poll_for_changes` then does not wait for the server.
  /// Zero: each `poll_for_changes` asks the server and waits.
  std::chrono::milliseconds poll_interval{};
  /// How each call waits for the server; empty: as `ServerWait` itself, while it calls what `RuleStore::set_progress`
  /// was given. When the user gives up, the call throws `schedule::Cancelled`, or `uncertain` in the middle of a
  /// commit.
  std::function<std::unique_ptr<ServerWait>()> create_wait{};
  /// The progress while the store is opened; see `RuleStore::set_progress`.
  schedule::Progress progress{};
};

/// Opens the store in the current schema of this connection. Where the schema has none, its tables are created and
/// filled in one transaction; tables of an older version are brought to this one. Tables that are not ours, that a
/// newer version created or that are in a database without UTF-8 fail with `foreign` or `newer` and are not touched. A
/// user who may only read opens it for reading, and each change then fails with `read_only`. After the connection was
/// lost, the next call opens another. The server is asked on a thread of the store, which is given up with its
/// connection when the server is silent for too long or the user does not want to wait. A call during another one fails
/// with `locked`. Throws `StoreError`, or `odbc::ConnectionStringError` for options that the server
/// does not have.
std::unique_ptr<RuleStore> open_server_store(const odbc::ConnectionString& options,
                                             const ServerStoreOptions& settings = {});

/// Which store a connection string leads to, for titles and messages: it holds the server, the port, the database and
/// the user, and how the connection is encrypted where that is weaker than it should be.
std::wstring describe_server_store(const odbc::ConnectionString& options);

}  // namespace workbench
