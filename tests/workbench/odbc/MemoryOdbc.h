#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "OdbcApi.h"

namespace test_support {

/// A refusal of the server behind the driver, with its SQLSTATE.
struct MemoryRefusal {
  std::string state;
};

/// A driver without a server: it connects to anything, keeps what it is given, and returns the rows that a test has put
/// there. There is one at a time, whose calls may come from several threads.
class MemoryOdbc {
 public:
  using Row = std::vector<std::optional<std::wstring>>;

  MemoryOdbc();
  ~MemoryOdbc();
  MemoryOdbc(const MemoryOdbc&) = delete;
  MemoryOdbc& operator=(const MemoryOdbc&) = delete;

  const workbench::odbc::OdbcApi& api() const { return api_; }

  std::vector<Row> rows;  ///< of every statement that is executed, unless there is `on_execute`
  /// What a server would do with a statement; it returns the rows or throws `MemoryRefusal`.
  std::function<std::vector<Row>(const std::wstring& sql, const std::vector<std::wstring>& parameters)> on_execute;
  /// What a server would do at the begin of a transaction, and at its end.
  std::function<void()> on_begin_of_transaction;
  std::function<void(bool commits)> on_end_of_transaction;
  std::vector<std::wstring> missing_drivers;  ///< a connection through one of them is refused, with `no_driver`
  std::string no_driver = "IM002";            ///< how this manager of drivers says that it has no such driver
  bool is_lost = false;                       ///< whether the connection has ended
  bool has_diagnostics = true;                ///< whether a refusal says why
  std::vector<std::wstring> connected;        ///< the connection strings that were tried
  std::vector<std::wstring> log;              ///< statements, parameters and ends of transactions, in their order

  void add_to_log(std::wstring entry);

 private:
  std::mutex log_mutex_;
  workbench::odbc::OdbcApi api_;
};

}  // namespace test_support
