#include "StoreResult.h"

namespace workbench {

HRESULT store_result(StoreErrorKind kind) noexcept {
  switch (kind) {
    case StoreErrorKind::read_only:
      return STG_E_ACCESSDENIED;
    case StoreErrorKind::locked:
      return STG_E_LOCKVIOLATION;
    case StoreErrorKind::full:
      return STG_E_MEDIUMFULL;
    case StoreErrorKind::damaged:
      return STG_E_DOCFILECORRUPT;
    case StoreErrorKind::foreign:
      return STG_E_INVALIDHEADER;
    case StoreErrorKind::newer:
      return STG_E_OLDDLL;
    case StoreErrorKind::unavailable:
    case StoreErrorKind::missing:
      return STG_E_UNKNOWN;
    case StoreErrorKind::invalid_value:
      return E_INVALIDARG;
    case StoreErrorKind::duplicate_name:
    case StoreErrorKind::exists:
      return STG_E_FILEALREADYEXISTS;
    case StoreErrorKind::not_found:
    case StoreErrorKind::setting_not_found:
      return STG_E_FILENOTFOUND;
    case StoreErrorKind::changed:
    case StoreErrorKind::setting_changed:
      return STG_E_NOTCURRENT;
    case StoreErrorKind::in_use:
      return STG_E_INUSE;
    case StoreErrorKind::no_driver:
      return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
    case StoreErrorKind::unreachable:
      return HRESULT_FROM_WIN32(ERROR_HOST_UNREACHABLE);
    case StoreErrorKind::login_refused:
      return HRESULT_FROM_WIN32(ERROR_LOGON_FAILURE);
    case StoreErrorKind::connection_lost:
      return HRESULT_FROM_WIN32(ERROR_CONNECTION_ABORTED);
    case StoreErrorKind::overloaded:
      return HRESULT_FROM_WIN32(ERROR_CONNECTION_COUNT_LIMIT);
    case StoreErrorKind::uncertain:
      return XACT_E_INDOUBT;
    case StoreErrorKind::cancelled:
      return E_ABORT;
  }
  return E_UNEXPECTED;
}

}  // namespace workbench
