#pragma once

#include <string>

#include "OdbcApi.h"

namespace test_support {

/// Passes the calls of ODBC on to another table, counts them and fails the one that is chosen. There is one at a time.
class FaultyOdbc {
 public:
  explicit FaultyOdbc(const workbench::odbc::OdbcApi& next);
  ~FaultyOdbc();
  FaultyOdbc(const FaultyOdbc&) = delete;
  FaultyOdbc& operator=(const FaultyOdbc&) = delete;

  const workbench::odbc::OdbcApi& api() const { return api_; }

  /// The call that comes `call`-th from now, counted from 1, fails with this SQLSTATE and does not reach the other
  /// table; an empty state means a failure without a diagnostic. Calls that release, or that ask about a failure, are
  /// not counted.
  void fail_call(int call, const std::string& state);

  /// How many calls have come since `fail_call`, or in all.
  int calls() const { return calls_; }

  /// How many handles are allocated and not released.
  int live_handles() const { return live_handles_; }

 private:
  friend struct FaultyCalls;

  bool is_chosen();

  workbench::odbc::OdbcApi next_;
  workbench::odbc::OdbcApi api_;
  int calls_ = 0;
  int failing_call_ = 0;
  std::wstring state_;
  bool failed_last_ = false;
  int live_handles_ = 0;
};

}  // namespace test_support
