#pragma once

#include "OdbcApi.h"

namespace workbench::odbc {

/// Owns an environment, a connection or a statement of ODBC.
class OdbcHandle {
 public:
  /// Allocates a handle of this type below `parent`, which it must not outlive. Throws `OdbcError`; ODBC keeps the
  /// diagnostics of an allocation with the parent.
  OdbcHandle(const OdbcApi& api, SQLSMALLINT type, SQLSMALLINT parent_type, SQLHANDLE parent);
  ~OdbcHandle();
  OdbcHandle(OdbcHandle&& other) noexcept;
  OdbcHandle& operator=(OdbcHandle&&) = delete;
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;

  SQLHANDLE get() const noexcept { return handle_; }
  const OdbcApi& api() const noexcept { return *api_; }

  /// Throws unless `code`, which `call` returned for this handle, is a success.
  void check(SQLRETURN code, const char* call) const;

 private:
  const OdbcApi* api_;
  SQLSMALLINT type_;
  SQLHANDLE handle_ = nullptr;
};

}  // namespace workbench::odbc
