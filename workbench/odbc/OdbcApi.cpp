#include "OdbcApi.h"

#include "OdbcError.h"

namespace workbench::odbc {

namespace {

template <class Function>
void look_up(HMODULE library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  if (!function) throw OdbcError({}, 0, std::string("ODBC has no ") + name);
}

/// The library stays loaded until the process ends, because the drivers that it loads do.
OdbcApi load_system_odbc() {
  const HMODULE library = LoadLibraryExW(L"odbc32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (!library) throw OdbcError({}, 0, "there is no ODBC on this machine");
  OdbcApi api;
  look_up(library, "SQLAllocHandle", api.allocate_handle);
  look_up(library, "SQLFreeHandle", api.free_handle);
  look_up(library, "SQLGetDiagRecW", api.get_diagnostic);
  look_up(library, "SQLSetEnvAttr", api.set_environment_attribute);
  look_up(library, "SQLSetConnectAttrW", api.set_connection_attribute);
  look_up(library, "SQLDriverConnectW", api.connect);
  look_up(library, "SQLDisconnect", api.disconnect);
  look_up(library, "SQLEndTran", api.end_transaction);
  look_up(library, "SQLPrepareW", api.prepare);
  look_up(library, "SQLBindParameter", api.bind_parameter);
  look_up(library, "SQLExecute", api.execute);
  look_up(library, "SQLExecDirectW", api.execute_directly);
  look_up(library, "SQLRowCount", api.count_rows);
  look_up(library, "SQLFetch", api.fetch);
  look_up(library, "SQLGetData", api.get_data);
  look_up(library, "SQLFreeStmt", api.free_statement);
  look_up(library, "SQLGetConnectAttrW", api.get_connection_attribute);
  look_up(library, "SQLSetStmtAttrW", api.set_statement_attribute);
  look_up(library, "SQLBindCol", api.bind_column);
  return api;
}

}  // namespace

const OdbcApi& system_odbc() {
  static const OdbcApi api = load_system_odbc();
  return api;
}

}  // namespace workbench::odbc
