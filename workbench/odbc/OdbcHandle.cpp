#include "OdbcHandle.h"

#include <utility>

#include "OdbcError.h"

namespace workbench::odbc {

OdbcHandle::OdbcHandle(const OdbcApi& api, SQLSMALLINT type, SQLSMALLINT parent_type, SQLHANDLE parent)
    : api_(&api), type_(type) {
  if (SQL_SUCCEEDED(api.allocate_handle(type, parent, &handle_))) return;
  handle_ = nullptr;
  if (!parent) throw OdbcError({}, 0, "SQLAllocHandle refused an environment");
  fail(api, parent_type, parent, "SQLAllocHandle");
}

OdbcHandle::~OdbcHandle() {
  if (handle_) api_->free_handle(type_, handle_);
}

OdbcHandle::OdbcHandle(OdbcHandle&& other) noexcept
    : api_(other.api_), type_(other.type_), handle_(std::exchange(other.handle_, nullptr)) {}

void OdbcHandle::check(SQLRETURN code, const char* call) const {
  if (!SQL_SUCCEEDED(code)) fail(*api_, type_, handle_, call);
}

}  // namespace workbench::odbc
