#include <comdef.h>

#include <functional>
#include <stdexcept>

#include "RecorderTest.h"
#include "Report.h"
#include "SnagtrapClient.h"

namespace diagnostics_test {
namespace {

using namespace SnagtrapUtil;

constexpr DWORD callers_error = 4321;

/// The recorder leaves its own last error behind in every call.
class LastError : public RecorderTest {
 protected:
  static DWORD after(const std::function<void()>& report) {
    SetLastError(callers_error);
    report();
    return GetLastError();
  }

  static void throwing(const std::function<void()>& report, const std::function<void()>& raise) {
    try {
      raise();
    } catch (...) {
      SetLastError(callers_error);
      report();
    }
  }
};

template <class Reporter>
class EveryLevel : public LastError {};

using Levels = testing::Types<TracerClass, AsserterClass, ShowError, CatchAndCall>;
TYPED_TEST_SUITE(EveryLevel, Levels);

TYPED_TEST(EveryLevel, PutsTheLastErrorBackWhenItIsDestroyed) {
  SetLastError(callers_error);
  {
    TypeParam reporter(location);
    EXPECT_EQ(GetLastError(), callers_error) << "creating a reporter must keep the last error";
    reporter.report(L"%d", 1);
    SetLastError(1);
  }
  EXPECT_EQ(GetLastError(), callers_error);
}

TEST_F(LastError, SurvivesEveryWayToReport) {
  EXPECT_EQ(after([] { expect(false, L"x", location); }), callers_error);
  EXPECT_EQ(after([] { report_hresult(E_FAIL, location); }), callers_error);
  EXPECT_EQ(after([] { TracerClass(location).trace(L"x"); }), callers_error);
  EXPECT_EQ(after([] { AsserterClass(location).assert_failed(L"x"); }), callers_error);
  EXPECT_EQ(after([] { ShowError(location).show(L"x"); }), callers_error);
  EXPECT_EQ(after([] { report_structured_exception(nullptr); }), callers_error);
  EXPECT_EQ(after([] { snagtrap_client(); }), callers_error);
}

TEST_F(LastError, SurvivesTheReportOfAnException) {
  const std::function<void()> exceptions[] = {
      [] { throw _com_error(E_FAIL); },
      [] { throw std::out_of_range("text"); },
      [] { throw std::runtime_error("text"); },
      [] { throw 1; },
  };
  for (const auto& raise : exceptions) {
    throwing([] { report_exception_in_flight(location); }, raise);
    EXPECT_EQ(GetLastError(), callers_error);
    throwing([] { catch_and_call(location); }, raise);
    EXPECT_EQ(GetLastError(), callers_error);
  }
}

TEST_F(LastError, OfTheCallerIsPartOfAssertionsAndErrors) {
  after([] { expect(false, L"x", location); });
  after([] { report_hresult(E_FAIL, location); });
  throwing([] { catch_and_call(location); }, [] { throw 1; });
  const auto records = recorder.commands(L"PROCESS");
  ASSERT_EQ(records.size(), 3u);
  for (const auto& record : records) {
    EXPECT_EQ(test_support::field_text(record, L"Last Error Code"), std::to_wstring(callers_error));
  }
}

TEST_F(LastError, SurvivesADroppedReport) {
  recorder.set_result(L"CREATE", E_FAIL);
  EXPECT_EQ(after([] { expect(false, L"x", location); }), callers_error);
}

}  // namespace
}  // namespace diagnostics_test
