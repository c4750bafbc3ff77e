#include "FaultyOdbc.h"

#include <algorithm>
#include <stdexcept>

#include "TextEncoding.h"

namespace test_support {

namespace {

FaultyOdbc* faulty = nullptr;
thread_local bool failed_last = false;  // whether the last call of the thread was chosen to fail

}  // namespace

template <class Call>
SQLRETURN FaultyOdbc::fail(const Call& call) const {
  const bool reaches = fault_.reaches && calls_ == failing_call_;
  const bool is_silent = fault_.is_silent;
  const SQLRETURN code = reaches ? call() : SQLRETURN{SQL_ERROR};
  if (is_silent) WaitForSingleObject(silence_ended_.get(), INFINITE);
  return is_silent ? code : SQLRETURN{SQL_ERROR};
}

/// What stands in the table. A function of ODBC has no parameter for an object.
struct FaultyCalls {
  /// A function that fails when it is chosen and otherwise calls that of the other table.
  template <auto member, class... Arguments>
  static SQLRETURN SQL_API call(Arguments... arguments) {
    const auto next = [&] { return (faulty->next_.*member)(arguments...); };
    return faulty->is_chosen() ? faulty->fail(next) : next();
  }

  template <auto member, class... Arguments>
  static void intercept(SQLRETURN (SQL_API* workbench::odbc::OdbcApi::*)(Arguments...)) {
    faulty->api_.*member = &call<member, Arguments...>;
  }

  static SQLRETURN SQL_API allocate_handle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
    const auto next = [&] {
      const SQLRETURN code = faulty->next_.allocate_handle(type, parent, handle);
      if (SQL_SUCCEEDED(code)) ++faulty->live_handles_;
      return code;
    };
    // No caller would release a handle whose allocation seems to have failed.
    const auto fail_late = [&] { return faulty->fault_.is_silent ? next() : SQLRETURN{SQL_ERROR}; };
    return faulty->is_chosen() ? faulty->fail(fail_late) : next();
  }

  static SQLRETURN SQL_API free_handle(SQLSMALLINT type, SQLHANDLE handle) {
    const SQLRETURN code = faulty->next_.free_handle(type, handle);
    if (SQL_SUCCEEDED(code)) --faulty->live_handles_;
    return code;
  }

  static SQLRETURN SQL_API get_diagnostic(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLWCHAR* state,
                                          SQLINTEGER* native, SQLWCHAR* text, SQLSMALLINT size, SQLSMALLINT* length) {
    if (!failed_last) return faulty->next_.get_diagnostic(type, handle, record, state, native, text, size, length);
    if (record != 1 || faulty->state_.empty()) return SQL_NO_DATA;
    std::ranges::copy(faulty->state_, state);
    state[5] = text[0] = 0;
    *native = 0;
    *length = 0;
    return SQL_SUCCESS;
  }
};

FaultyOdbc::FaultyOdbc(const workbench::odbc::OdbcApi& next) : next_(next), api_(next) {
  if (faulty) throw std::logic_error("there is a faulty ODBC already");
  faulty = this;
  using workbench::odbc::OdbcApi;
  api_.allocate_handle = &FaultyCalls::allocate_handle;
  api_.free_handle = &FaultyCalls::free_handle;
  api_.get_diagnostic = &FaultyCalls::get_diagnostic;
  FaultyCalls::intercept<&OdbcApi::set_environment_attribute>(&OdbcApi::set_environment_attribute);
  FaultyCalls::intercept<&OdbcApi::set_connection_attribute>(&OdbcApi::set_connection_attribute);
  FaultyCalls::intercept<&OdbcApi::connect>(&OdbcApi::connect);
  FaultyCalls::intercept<&OdbcApi::end_transaction>(&OdbcApi::end_transaction);
  FaultyCalls::intercept<&OdbcApi::prepare>(&OdbcApi::prepare);
  FaultyCalls::intercept<&OdbcApi::bind_parameter>(&OdbcApi::bind_parameter);
  FaultyCalls::intercept<&OdbcApi::execute>(&OdbcApi::execute);
  FaultyCalls::intercept<&OdbcApi::execute_directly>(&OdbcApi::execute_directly);
  FaultyCalls::intercept<&OdbcApi::count_rows>(&OdbcApi::count_rows);
  FaultyCalls::intercept<&OdbcApi::fetch>(&OdbcApi::fetch);
  FaultyCalls::intercept<&OdbcApi::get_data>(&OdbcApi::get_data);
  FaultyCalls::intercept<&OdbcApi::free_statement>(&OdbcApi::free_statement);
  FaultyCalls::intercept<&OdbcApi::set_statement_attribute>(&OdbcApi::set_statement_attribute);
  FaultyCalls::intercept<&OdbcApi::bind_column>(&OdbcApi::bind_column);
}

FaultyOdbc::~FaultyOdbc() { faulty = nullptr; }

void FaultyOdbc::fail_call(std::size_t call, const std::string& state, Fault fault) {
  calls_ = 0;
  has_failed_ = false;
  failing_call_ = call;
  state_ = base::from_utf8(state);
  fault_ = fault;
  failed_last = false;
  ResetEvent(silence_ended_.get());
}

void FaultyOdbc::end_silence() {
  clear_faults();
  SetEvent(silence_ended_.get());
}

std::optional<std::string> FaultyOdbc::failed_call() const {
  if (!has_failed_) return std::nullopt;
  return "a call of ODBC with the state '" + base::to_utf8(state_) +
         (fault_.reaches ? "' that reaches the server" : "'");
}

bool FaultyOdbc::is_chosen() {
  const std::size_t call = ++calls_;
  failed_last = failing_call_ > 0 && (fault_.is_lasting ? call >= failing_call_ : call == failing_call_);
  if (failed_last) has_failed_ = true;
  return failed_last;
}

}  // namespace test_support
