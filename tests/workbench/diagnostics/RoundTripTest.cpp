#include <stdexcept>

#include "LibraryTest.h"
#include "Report.h"
#include "Reporters.h"
#include "SnagtrapClient.h"

namespace snagtrap_test {
namespace {

using namespace SnagtrapUtil;

constexpr SourceLocation location{"Some.cpp", 70, "some_function", "void some_function(int)"};

/// The module's client with the library's DLL, which it finds by name beside the program.
class RoundTrip : public LibraryTest {};

TEST_F(RoundTrip, FromTheReportToTheLog) {
  expect(false, L"pMainMenu != 0", location);
  report_hresult(E_ACCESSDENIED, location);
  try {
    throw std::runtime_error("broken");
  } catch (...) {
    catch_and_call(location);
  }
  try {
    throw std::out_of_range("no such value");
  } catch (...) {
    report_exception_in_flight(location);
  }

  auto lines = folder.lines();
  ASSERT_FALSE(lines.empty());
  if (lines[0]["command"] == "INIT") {
    EXPECT_EQ(lines[0]["record"]["ClientVersion"], "2.2 05.05.2006");
    lines.erase(lines.begin());
  }
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0]["record"]["Description"], "pMainMenu != 0");
  EXPECT_EQ(lines[1]["record"]["HRESULT"], E_ACCESSDENIED);
  EXPECT_EQ(lines[2]["record"]["Description"], " (stdexcept: \"broken\")");
  EXPECT_EQ(lines[3]["record"]["$Message"], "std::out_of_range - no such value; FILE - Some.cpp, LINE - 70");
}

TEST_F(RoundTrip, OfEveryCommandWord) {
  SnagtrapClient client;
  ASSERT_TRUE(client.ensure_initialised());
  EXPECT_EQ(client.is_clean(), S_OK);
  EXPECT_EQ(client.trace_enabled(), S_OK);
  EXPECT_EQ(client.report_dialog(), S_FALSE);
  EXPECT_EQ(client.do_clean(), S_OK);
  client.shutdown();
  auto lines = folder.lines();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0]["command"], "DEINIT");
}

}  // namespace
}  // namespace snagtrap_test
