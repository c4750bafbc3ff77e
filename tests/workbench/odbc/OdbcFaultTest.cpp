#include <gtest/gtest.h>

#include "FaultLoop.h"
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
  OdbcStatement blocks = connection.prepare(L"select");
  blocks.fetch_in_blocks({0, 3}).execute();
  while (blocks.fetch()) EXPECT_EQ(std::to_wstring(blocks.integer(0)), blocks.text(1));
  transaction.commit();
}

TEST(OdbcFault, EachCallThatFailsIsReportedAndEveryHandleIsReleased) {
  test_support::MemoryOdbc driver;
  driver.rows = {{L"1", L"1"}, {L"2", L"2"}};
  test_support::FaultyOdbc odbc(driver.api());
  use_everything(odbc.api());
  const std::size_t calls = odbc.calls();
  EXPECT_EQ(odbc.live_handles(), 0);
  for (const std::string state : {"08S01", "40001", ""}) {
    const std::size_t failed = test_support::fail_each_call([&](std::size_t number) {
      odbc.fail_call(number, state);
      std::optional<std::string> reported;
      try {
        use_everything(odbc.api());
      } catch (const OdbcError& error) {
        reported = error.state();
      }
      // The last call returns to automatic commits after the change was acknowledged, which is no failure of the
      // change.
      EXPECT_EQ(reported.has_value(), number < calls);
      // No diagnostics belong to an environment that was not allocated, and a connection that is refused without any
      // lacks its driver.
      constexpr std::size_t connects = 5;
      if (reported) {
        EXPECT_EQ(*reported, number == 1 ? "" : number == connects && state.empty() ? "IM002" : state);
      }
      EXPECT_EQ(odbc.live_handles(), 0);
      return odbc.failed_call();
    });
    EXPECT_EQ(failed, calls);
  }
}

}  // namespace
