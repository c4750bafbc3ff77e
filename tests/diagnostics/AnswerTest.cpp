#include "RecorderTest.h"
#include "Report.h"
#include "ThrownBy.h"

namespace diagnostics_test {
namespace {

using namespace SnagtrapUtil;

/// Counts breaks into the debugger and continues after them, as a debugger does when its user wants that.
class BreakCounter {
 public:
  BreakCounter() : handler_(AddVectoredExceptionHandler(1, step_over)) { breaks = 0; }
  ~BreakCounter() { RemoveVectoredExceptionHandler(handler_); }

  int count() const { return breaks; }

 private:
  static LONG CALLBACK step_over(EXCEPTION_POINTERS* exception) {
    if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_BREAKPOINT) return EXCEPTION_CONTINUE_SEARCH;
    ++breaks;
    constexpr unsigned char breakpoint = 0xCC;
    auto& next = exception->ContextRecord->Rip;
    if (*reinterpret_cast<const unsigned char*>(next) == breakpoint) ++next;
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  static inline int breaks = 0;
  void* handler_;
};

class Answer : public RecorderTest {
 protected:
  BreakCounter breaks;
};

TEST_F(Answer, OfTheLibraryIsTheAnswerOfTheReporter) {
  for (const HRESULT answer : {S_OK, S_FALSE, static_cast<HRESULT>(2), E_ABORT, E_FAIL, E_OUTOFMEMORY}) {
    recorder.set_result(L"PROCESS", answer);
    EXPECT_EQ(TracerClass(location).trace(L"x"), answer);
    EXPECT_EQ(TracerClass(location).report(L"x"), answer);
    EXPECT_EQ(AsserterClass(location).assert_failed(L"x"), answer);
    EXPECT_EQ(ShowError(location).show(L"x"), answer);
    EXPECT_EQ(report_structured_exception(nullptr), answer);
  }
  EXPECT_EQ(breaks.count(), 0) << "reporters only answer";
}

TEST_F(Answer, OfTheFilterCountsForNothing) {
  recorder.set_result(L"FILTER", E_ABORT);
  recorder.set_result(L"PROCESS", 3);
  EXPECT_EQ(AsserterClass(location).assert_failed(L"x"), 3);
}

TEST_F(Answer, OneBreaksIntoTheDebuggerAndThenGoesOn) {
  recorder.set_result(L"PROCESS", 1);
  EXPECT_FALSE(expect(false, L"x", location));
  EXPECT_EQ(breaks.count(), 1);
  report_hresult(E_FAIL, location);
  EXPECT_EQ(breaks.count(), 2);
  try {
    throw 1;
  } catch (...) {
    catch_and_call(location);
  }
  EXPECT_EQ(breaks.count(), 3);
}

TEST_F(Answer, OfAnyOtherKindGoesOn) {
  for (const HRESULT answer : {S_OK, static_cast<HRESULT>(2), E_FAIL, E_ACCESSDENIED, RPC_E_DISCONNECTED}) {
    recorder.set_result(L"PROCESS", answer);
    EXPECT_FALSE(expect(false, L"x", location));
  }
  EXPECT_EQ(breaks.count(), 0);
}

TEST_F(Answer, OfAFailedCreateIsNotTheUsers) {
  for (const HRESULT failure : {E_ABORT, E_OUTOFMEMORY}) {
    recorder.set_result(L"CREATE", failure);
    EXPECT_FALSE(expect(false, L"x", location)) << "E_ABORT would end the process";
    AsserterClass asserter(location);
    EXPECT_EQ(asserter.assert_failed(L"x"), E_FAIL);
    EXPECT_EQ(asserter.status(), failure);
    EXPECT_EQ(asserter.trace(L"x"), E_FAIL);
    ShowError shown(location);
    EXPECT_EQ(shown.show(L"x"), E_FAIL);
    EXPECT_EQ(shown.status(), failure);
    EXPECT_EQ(report_structured_exception(nullptr), E_FAIL);
  }
}

class Expectation : public RecorderTest {};

TEST_F(Expectation, ThatHoldsReportsNothing) {
  EXPECT_TRUE(expect(true, L"x", location));
  EXPECT_TRUE(recorder.commands().empty());
}

TEST_F(Expectation, ThatFailsCarriesItsExpression) {
  EXPECT_FALSE(expect(false, L"::IsWindow(m_hWnd)", location));
  EXPECT_EQ(test_support::field_text(processed(), L"Description"), L"::IsWindow(m_hWnd)");
}

class FailingCall : public RecorderTest {};

TEST_F(FailingCall, IsAnAssertionWithoutTextAndThrownOn) {
  EXPECT_EQ(test_support::thrown_by([] { require_success(E_ACCESSDENIED, location); }), E_ACCESSDENIED);
  const auto record = processed();
  EXPECT_EQ(test_support::field_text(record, L"$Type"), L"ASSERT");
  EXPECT_FALSE(test_support::find_field(record, L"Description"));
  EXPECT_EQ(test_support::field_text(record, L"HRESULT"), std::to_wstring(E_ACCESSDENIED));
}

TEST_F(FailingCall, IsNoneWhenItsResultIsPositive) {
  require_success(S_OK, location);
  require_success(S_FALSE, location);
  EXPECT_TRUE(recorder.commands().empty());
}

}  // namespace
}  // namespace diagnostics_test
