#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ConnectionString.h"

namespace workbench::odbc {

/// What connections to one kind of server have in common. Every kind has the keywords Driver, DSN, Server, Port,
/// Database, Uid and Pwd.
struct DriverProfile {
  using Option = std::pair<std::wstring, std::wstring>;

  std::vector<std::wstring> names;     ///< of its driver, in the order in which they are tried
  std::vector<Option> fixed_options;   ///< these hold whatever the string says
  std::vector<std::wstring> keywords;  ///< further ones that a string may hold
  Option encryption;  ///< a keyword and its strongest value, which includes that the server proves who it is
  /// What stands in the text of a refusal, in any language, when the server wants a password and was given none.
  /// Empty: the state says so.
  std::string missing_password{};
  /// The same when the server refused the password. A server of another language may write something else, and its
  /// refusal then is what its state says.
  std::string wrong_password{};
  /// The same, one of them, when the server has no connection left.
  std::vector<std::string> no_connection_left{};
  /// Variables of the environment with which the driver connects elsewhere, whatever the string says.
  std::vector<std::wstring> redirecting_variables{};
};

/// Refuses keywords that the kind of server does not have: such an option could undo what the fixed ones and the
/// encryption promise. Throws `ConnectionStringError`.
void refuse_unknown_keywords(const ConnectionString& options, const DriverProfile& profile);

/// What is given to ODBC, one string after another until a driver is found. Each holds the fixed options, the server,
/// which is this machine where the string names none, and for another machine the strongest encryption unless the
/// string asks for another.
std::vector<ConnectionString> connection_attempts(const ConnectionString& options, const DriverProfile& profile);

/// Which store a user sees in titles and messages: user, server, port and database or the data source, with the
/// encryption where the string asks for less than the strongest. It never holds anything else of the string.
std::wstring describe(const ConnectionString& options, const DriverProfile& profile);

}  // namespace workbench::odbc
