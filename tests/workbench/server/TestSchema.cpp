#include "TestSchema.h"

#include <chrono>

#include "OdbcError.h"
#include "TestServer.h"

using workbench::odbc::ConnectionString;

namespace {

/// A name that no other program on this server takes, not even an earlier one whose process number this one got.
std::wstring next_name() {
  static int count = 0;
  static const long long start = std::chrono::system_clock::now().time_since_epoch().count();
  return L"desk_" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(start) + L"_" +
         std::to_wstring(++count);
}

}  // namespace

TestSchema::TestSchema()
    : name_(next_name()),
      administrator_(workbench::odbc::system_odbc(), ConnectionString(test_support::test_server().value()),
                     workbench::postgres().driver, std::chrono::seconds(10)) {
  // A lock that a failed test has left behind fails the next one instead of keeping it for ever.
  run(L"SET statement_timeout = '60s'; CREATE ROLE " + name_ + L" LOGIN PASSWORD 'password'; CREATE SCHEMA " + name_ +
      L" AUTHORIZATION " + name_ + L"; SET search_path = " + name_);
}

ConnectionString TestSchema::options_as(const std::wstring& user) {
  ConnectionString options(test_support::test_server().value());
  options.set(L"Uid", user);
  options.set(L"Pwd", L"password");
  return options;
}

std::string TestSchema::refused(const std::wstring& sql) const {
  try {
    run(sql);
    return {};
  } catch (const workbench::odbc::OdbcError& error) {
    return error.state();
  }
}

std::wstring TestSchema::tables() const {
  return text(
      L"SELECT string_agg(table_name || '.' || column_name, ' ' ORDER BY table_name, column_name) FROM "
      L"information_schema.columns WHERE table_schema = current_schema()");
}

void TestSchema::make_older() const {
  run(L"DROP TABLE changed_rows, changes CASCADE; DROP FUNCTION sign_change, present_change, record_change, "
      L"record_closed_days CASCADE; UPDATE rule_store SET Version = 4");
}

std::wstring TestSchema::text(const std::wstring& sql) const {
  workbench::odbc::OdbcStatement row = administrator_.prepare(sql);
  row.execute();
  return row.fetch() ? row.try_text(0).value_or(L"") : L"";
}
