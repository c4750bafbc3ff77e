#pragma once

#include <stdexcept>
#include <string>

#include "OdbcApi.h"

namespace workbench::odbc {

/// A refusal of ODBC, of a driver or of a server.
class OdbcError : public std::runtime_error {
 public:
  /// `text` is a technical text for logs, in UTF-8.
  OdbcError(std::string state, long native, const std::string& text)
      : std::runtime_error(text), state_(std::move(state)), native_(native) {}

  /// The five characters of its SQLSTATE; empty when ODBC gave none, as when there is no ODBC.
  const std::string& state() const noexcept { return state_; }

  /// The driver's own number of the error.
  long native() const noexcept { return native_; }

 private:
  std::string state_;
  long native_;
};

/// Throws what the diagnostic records of this handle say; `call` names the function that failed. Throws std::bad_alloc
/// for a driver that ran out of memory.
[[noreturn]] void fail(const OdbcApi& api, SQLSMALLINT handle_type, SQLHANDLE handle, const char* call);

}  // namespace workbench::odbc
