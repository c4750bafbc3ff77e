#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OdbcApi.h"

namespace test_support {

/// A driver without a server: it connects to anything, keeps what it is given, and returns the rows that a test has put
/// there. There is one at a time.
class MemoryOdbc {
 public:
  using Row = std::vector<std::optional<std::wstring>>;

  MemoryOdbc();
  ~MemoryOdbc();
  MemoryOdbc(const MemoryOdbc&) = delete;
  MemoryOdbc& operator=(const MemoryOdbc&) = delete;

  const workbench::odbc::OdbcApi& api() const { return api_; }

  std::vector<Row> rows;                      ///< of every statement that is executed
  std::vector<std::wstring> missing_drivers;  ///< a connection through one of them is refused, with `no_driver`
  std::string no_driver = "IM002";            ///< how this manager of drivers says that it has no such driver
  bool is_lost = false;                       ///< whether the connection has ended
  bool has_diagnostics = true;                ///< whether a refusal says why
  std::vector<std::wstring> connected;        ///< the connection strings that were tried
  std::vector<std::wstring> log;              ///< statements, parameters and ends of transactions, in their order

 private:
  workbench::odbc::OdbcApi api_;
};

}  // namespace test_support
