#include <comdef.h>

#include <new>
#include <stdexcept>

#include "RecorderTest.h"
#include "Report.h"
#include "SnagtrapClient.h"

namespace diagnostics_test {
namespace {

using namespace SnagtrapUtil;
using IKV_SnagtrapUtil::IDebugObject;
using test_support::field_text;
using test_support::find_field;
using test_support::RecordedCommand;

/// Throws a value and lets `report` see it in flight.
template <class Thrown, class Report>
auto in_flight(Thrown thrown, Report report) {
  try {
    throw thrown;  // NOLINT(misc-throw-by-value-catch-by-reference): others throw pointers too
  } catch (...) {
    return report();
  }
}

HRESULT translate() { return report_exception_in_flight(location); }

class ExceptionTranslator : public RecorderTest {
 protected:
  std::wstring message() const { return field_text(processed(), L"$Message"); }
};

TEST_F(ExceptionTranslator, ComErrorGivesItsHresult) {
  EXPECT_EQ(in_flight(_com_error(E_ACCESSDENIED), translate), E_ACCESSDENIED);
  EXPECT_EQ(message(), L"HRESULT - 80070005; FILE - Some.cpp, LINE - 70");
}

TEST_F(ExceptionTranslator, OutOfRangeIsAnInvalidArgument) {
  EXPECT_EQ(in_flight(std::out_of_range("no such value"), translate), E_INVALIDARG);
  EXPECT_EQ(message(), L"std::out_of_range - no such value; FILE - Some.cpp, LINE - 70");
}

TEST_F(ExceptionTranslator, StandardExceptionIsUnexpected) {
  EXPECT_EQ(in_flight(std::runtime_error("broken"), translate), E_UNEXPECTED);
  EXPECT_EQ(message(), L"std::exception - broken; FILE - Some.cpp, LINE - 70");
}

TEST_F(ExceptionTranslator, AnythingElseIsUnexpected) {
  EXPECT_EQ(in_flight(42, translate), E_UNEXPECTED);
  EXPECT_EQ(message(), L"unknown exception; FILE - Some.cpp, LINE - 70");
}

TEST_F(ExceptionTranslator, OutOfMemoryKeepsItsMeaning) {
  EXPECT_EQ(in_flight(std::bad_alloc(), translate), E_OUTOFMEMORY);
}

TEST_F(ExceptionTranslator, PercentSignsInTheTextAreNoFormat) {
  in_flight(std::runtime_error("%s %n 100%"), translate);
  EXPECT_EQ(message(), L"std::exception - %s %n 100%; FILE - Some.cpp, LINE - 70");
}

TEST_F(ExceptionTranslator, ReportsThroughTheTracer) {
  in_flight(42, translate);
  EXPECT_EQ(field_text(processed(), L"$Type"), L"TRACE");
}

TEST_F(ExceptionTranslator, ReturnsTheHresultAlsoWhenTheReportIsDropped) {
  recorder.set_result(L"CREATE", E_FAIL);
  EXPECT_EQ(in_flight(_com_error(E_ACCESSDENIED), translate), E_ACCESSDENIED);
}

class CatchAll : public RecorderTest {
 protected:
  HRESULT report(const wchar_t* message = L"") { return CatchAndCall(location).report_in_flight(message); }
};

TEST_F(CatchAll, StandardExceptionIsDescribedByItsText) {
  in_flight(std::runtime_error("broken"), [this] { return report(); });
  const RecordedCommand record = processed();
  EXPECT_EQ(field_text(record, L"$Type"), L"CREATE ERROR");
  EXPECT_EQ(field_text(record, L"Description"), L" (stdexcept: \"broken\")");
}

TEST_F(CatchAll, MessageStandsBeforeTheText) {
  in_flight(std::out_of_range("broken"), [this] { return report(L"While saving"); });
  EXPECT_EQ(field_text(processed(), L"Description"), L"While saving (stdexcept: \"broken\")");
}

TEST_F(CatchAll, AnythingElseIsDescribedByTheMessageAlone) {
  in_flight(_com_error(E_FAIL), [this] { return report(L"While saving"); });
  EXPECT_EQ(field_text(processed(), L"Description"), L"While saving");
}

TEST_F(CatchAll, EmptyMessageGivesNoDescription) {
  in_flight(42, [this] { return report(); });
  EXPECT_FALSE(find_field(processed(), L"Description"));
}

TEST_F(CatchAll, ThrownRecordBecomesTheInnerRecordAndIsReleased) {
  const long before = recorder.live_objects();
  IDebugObject* thrown = nullptr;
  ASSERT_EQ(snagtrap_client().command(L"CREATE", nullptr, &thrown), S_OK);
  const Bstr name(L"Cause");
  const Bstr cause(L"the other module");
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = cause.get();
  thrown->SetField(name.get(), value);

  in_flight(thrown, [this] { return report(L"While saving"); });
  const RecordedCommand record = processed();
  EXPECT_EQ(field_text(record, L"Description"), L"While saving");
  const auto* inner = find_field(record, L"Inner");
  ASSERT_TRUE(inner);
  EXPECT_THAT(inner->inner, testing::ElementsAre(text(L"Cause", L"the other module")));
  EXPECT_EQ(recorder.live_objects(), before);
}

TEST_F(CatchAll, ThrownRecordIsReleasedWhenTheReportIsDropped) {
  const long before = recorder.live_objects();
  IDebugObject* thrown = nullptr;
  ASSERT_EQ(snagtrap_client().command(L"CREATE", nullptr, &thrown), S_OK);
  recorder.set_result(L"CREATE", E_FAIL);
  in_flight(thrown, [this] { return report(); });
  EXPECT_EQ(recorder.live_objects(), before);
}

TEST_F(CatchAll, ThrownNullRecordIsReportedWithoutInnerRecord) {
  in_flight(static_cast<IDebugObject*>(nullptr), [this] { return report(L"While saving"); });
  EXPECT_FALSE(find_field(processed(), L"Inner"));
}

TEST_F(CatchAll, ReturnsTheLibrarysResult) {
  recorder.set_result(L"PROCESS", 7);
  EXPECT_EQ(in_flight(42, [this] { return report(); }), 7);
}

TEST_F(CatchAll, HasAnEmptyMessageThroughoutTheProgram) {
  in_flight(42, [] {
    catch_and_call(location);
    return 0;
  });
  const RecordedCommand record = processed();
  EXPECT_EQ(field_text(record, L"$Type"), L"CREATE ERROR");
  EXPECT_FALSE(find_field(record, L"Description"));
}

}  // namespace
}  // namespace diagnostics_test
