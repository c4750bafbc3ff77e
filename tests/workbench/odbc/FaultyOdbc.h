#pragma once

#include <atomic>
#include <optional>
#include <string>

#include "OdbcApi.h"
#include "Owned.h"

namespace test_support {

/// Passes the calls of ODBC on to another table, counts them and fails the one that is chosen. There is one at a time.
class FaultyOdbc {
 public:
  explicit FaultyOdbc(const workbench::odbc::OdbcApi& next);
  ~FaultyOdbc();
  FaultyOdbc(const FaultyOdbc&) = delete;
  FaultyOdbc& operator=(const FaultyOdbc&) = delete;

  const workbench::odbc::OdbcApi& api() const { return api_; }

  /// How a call fails.
  struct Fault {
    bool reaches = false;     ///< the other table gets the call; what it returns is lost, or comes late if it is silent
    bool is_silent = false;   ///< the call does not return before `end_silence`
    bool is_lasting = false;  ///< all later calls fail too, without reaching the other table
  };

  /// The call that comes `call`-th from now, counted from 1, fails in this way with this SQLSTATE; an empty state means
  /// a failure without a diagnostic. Calls that release, or that ask about a failure, are not counted.
  void fail_call(std::size_t call, const std::string& state, Fault fault);
  void fail_call(std::size_t call, const std::string& state) { fail_call(call, state, {}); }

  /// From now on nothing fails.
  void clear_faults() { failing_call_ = 0; }

  /// Lets the calls return that are silent, and those to come.
  void end_silence();

  /// The call that has failed since `fail_call`, in words; nothing when no call has.
  std::optional<std::string> failed_call() const;

  /// How many calls have come since `fail_call`, or in all.
  std::size_t calls() const { return calls_; }

  /// How many handles are allocated and not released.
  int live_handles() const { return live_handles_; }

 private:
  friend struct FaultyCalls;

  bool is_chosen();
  template <class Call>
  SQLRETURN fail(const Call& call) const;

  workbench::odbc::OdbcApi next_;
  workbench::odbc::OdbcApi api_;
  std::atomic<std::size_t> calls_ = 0;
  std::size_t failing_call_ = 0;
  std::atomic<bool> has_failed_ = false;
  Fault fault_;
  base::KernelHandle silence_ended_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  std::wstring state_;
  std::atomic<int> live_handles_ = 0;
};

}  // namespace test_support
