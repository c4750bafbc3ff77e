#include <gtest/gtest.h>

#include "FaultyOdbc.h"
#include "MemoryOdbc.h"
#include "OdbcConnection.h"
#include "OdbcError.h"

using namespace workbench::odbc;

namespace {

const DriverProfile one_driver{{L"Driver"}, {}, {}, {L"SSLmode", L"full"}};

/// Visits every function that this layer calls.
void use_everything(const OdbcApi& api) {
  OdbcConnection connection(api, ConnectionString(L"Server=localhost"), one_driver, {});
  connection.execute(L"set");
  OdbcTransaction transaction(connection);
  OdbcStatement statement = connection.prepare(L"select ?");
  statement.bind(1, L"x").bind(2, 1).bind_null(3);
  for (int run = 0; run < 2; ++run) {
    statement.execute();
    while (statement.fetch()) EXPECT_EQ(std::to_wstring(statement.integer(0)), statement.text(1));
  }
  transaction.commit();
}

TEST(OdbcFault, EachCallThatFailsIsReportedAndEveryHandleIsReleased) {
  test_support::MemoryOdbc driver;
  driver.rows = {{L"1", L"1"}, {L"2", L"2"}};
  test_support::FaultyOdbc odbc(driver.api());
  use_everything(odbc.api());
  const int calls = odbc.calls();
  EXPECT_EQ(odbc.live_handles(), 0);
  for (const std::string state : {"08S01", "40001", ""}) {
    // The last call returns to automatic commits after the change was acknowledged, which is no failure of the change.
    for (int call = 1; call < calls; ++call) {
      odbc.fail_call(call, state);
      try {
        use_everything(odbc.api());
        ADD_FAILURE() << "call " << call << " failed and nobody noticed";
      } catch (const OdbcError& error) {
        // No diagnostics belong to an environment that was not allocated.
        EXPECT_EQ(error.state(), call == 1 ? "" : state) << "call " << call;
      }
      EXPECT_EQ(odbc.live_handles(), 0) << "after call " << call;
    }
  }
}

}  // namespace
