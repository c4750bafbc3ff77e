#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OdbcApi.h"
#include "Progress.h"
#include "RuleStore.h"

namespace workbench {

/// Why a store cannot be opened, where no `StoreError` says so. `message` is what the user reads.
struct StoreLocationError {
  std::wstring message;
};

/// A password that the user is asked for.
struct PasswordRequest {
  std::wstring store;       ///< its description
  std::wstring refusal{};   ///< why the password before this one was refused; empty if there was none
  bool remembered = false;  ///< whether Windows keeps a password for this user of this server
};

struct EnteredPassword {
  std::wstring password;
  bool remember = false;  ///< whether Windows is to keep it from now on
};

/// Asks the user for a password. Returns nothing when the user cancels. Throws `StoreLocationError` where there
/// is no way to ask.
using AskPassword = std::function<std::optional<EnteredPassword>(const PasswordRequest& request)>;

/// How a store is opened.
struct StoreOpening {
  StoreContent first_content{};  ///< of a store that is created
  /// What a store is created from instead. Then one that is there already fails with `exists`.
  const StoreCopy* copied = nullptr;
  bool may_create = true;      ///< whether one is created; if not, opening fails with `missing`
  AskPassword ask_password{};  ///< none: a server that wants a password is refused
  /// Called while the store is opened, migrated or filled. Cancels that with `schedule::Cancelled`: the store is as it
  /// was, and nothing is left of a new one. For a server, a window shows the box of the wait instead.
  schedule::Progress progress{};
  /// Whether a window shows the store: a server is then asked for changes of others without waiting, and a box says
  /// when a call has to wait for it.
  bool in_window = false;
  const odbc::OdbcApi* odbc = nullptr;  ///< the functions of ODBC; null: the system's
};

/// Where a store is: in a file or on a database server.
class StoreLocation {
 public:
  StoreLocation(const StoreLocation&) = delete;
  StoreLocation& operator=(const StoreLocation&) = delete;
  virtual ~StoreLocation() = default;

  /// The store in titles and messages. It says of a server only the user, server, port and database, and how the
  /// connection is encrypted where that is weaker than it should be.
  virtual std::wstring description() const = 0;

  /// The name under which the store is found again, as after --store, without the password.
  virtual std::wstring text() const = 0;

  /// Opens the store. A server's password is asked for when the connection string has none and the server wants one:
  /// first of the driver's own sources, then of Windows, then of the user. It is kept for a second call. Throws
  /// `StoreError`, `StoreLocationError`, or `schedule::Cancelled` when the user enters no password.
  virtual std::unique_ptr<RuleStore> open(const StoreOpening& opening) = 0;

 protected:
  StoreLocation() = default;
};

/// A store that is open, and how to name it.
struct OpenedStore {
  std::shared_ptr<RuleStore> store;
  std::wstring description;  ///< see `StoreLocation::description`
  std::wstring name{};       ///< see `StoreLocation::text`
};

/// Opens the store at this location; see `StoreLocation::open`.
OpenedStore open_store(StoreLocation& location, const StoreOpening& opening);

/// The location that `entered` leads to: `odbc:` and a connection string, or the path of a file, with or without blanks
/// around it. Only this function distinguishes the two. Throws `StoreLocationError` for what is no connection string,
/// and for a path that holds a password.
std::unique_ptr<StoreLocation> find_store(std::wstring_view entered);

/// One of the arguments of the command line as a message may show it: `...` for one that holds a connection string, and
/// for each when one of them holds a password.
std::wstring printable_argument(const std::wstring& argument, std::span<const std::wstring> arguments);

/// The fields that name the store on a server. The port and the user may be empty.
struct ServerFields {
  std::wstring server;
  std::wstring port;
  std::wstring database;
  std::wstring user;
};

/// The name with which `find_store` finds this server.
std::wstring server_name(const ServerFields& fields);

}  // namespace workbench
