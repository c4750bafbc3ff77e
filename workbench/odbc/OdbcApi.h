#pragma once

#include <windows.h>
#include <sqlext.h>

#include <string>

namespace workbench::odbc {

/// The functions of ODBC that this layer calls. Every call goes through a table, so that a test can count and fail
/// them.
struct OdbcApi {
  decltype(&SQLAllocHandle) allocate_handle = nullptr;
  decltype(&SQLFreeHandle) free_handle = nullptr;
  decltype(&SQLGetDiagRecW) get_diagnostic = nullptr;
  decltype(&SQLSetEnvAttr) set_environment_attribute = nullptr;
  decltype(&SQLSetConnectAttrW) set_connection_attribute = nullptr;
  decltype(&SQLDriverConnectW) connect = nullptr;
  decltype(&SQLDisconnect) disconnect = nullptr;
  decltype(&SQLEndTran) end_transaction = nullptr;
  decltype(&SQLPrepareW) prepare = nullptr;
  decltype(&SQLBindParameter) bind_parameter = nullptr;
  decltype(&SQLExecute) execute = nullptr;
  decltype(&SQLExecDirectW) execute_directly = nullptr;
  decltype(&SQLRowCount) count_rows = nullptr;
  decltype(&SQLFetch) fetch = nullptr;
  decltype(&SQLGetData) get_data = nullptr;
  decltype(&SQLFreeStmt) free_statement = nullptr;
  decltype(&SQLGetConnectAttrW) get_connection_attribute = nullptr;
  decltype(&SQLSetStmtAttrW) set_statement_attribute = nullptr;
  decltype(&SQLBindCol) bind_column = nullptr;
};

/// The text as ODBC takes it: as one that might be changed, although it is not.
inline SQLWCHAR* units(const std::wstring& text) {
  return reinterpret_cast<SQLWCHAR*>(const_cast<wchar_t*>(text.data()));
}

/// The system's ODBC, which the first call loads. Throws `OdbcError` without a state when there is none.
const OdbcApi& system_odbc();

}  // namespace workbench::odbc
