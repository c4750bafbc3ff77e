#include <cstring>
#include <optional>

#include "RecorderTest.h"
#include "Report.h"
#include "SnagtrapClient.h"

namespace diagnostics_test {
namespace {

using namespace SnagtrapUtil;
using test_support::field_text;
using test_support::find_field;
using test_support::RecordedCommand;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> names(const RecordedCommand& command) {
  std::vector<std::wstring> all;
  for (const auto& field : command.fields) all.push_back(field.name);
  return all;
}

class AssertionRecord : public RecorderTest {};
class TraceRecord : public RecorderTest {};
class ErrorRecord : public RecorderTest {};
class StructuredExceptionRecord : public RecorderTest {};

TEST_F(AssertionRecord, HasItsFieldsInOrderAndTyped) {
  SetLastError(5);
  CONTEXT context{};
  AsserterClass(location, 9).assert_failed(L"pMainMenu != 0", E_POINTER, &context);

  RecordedCommand record = processed();
  ASSERT_FALSE(record.fields.empty());
  EXPECT_EQ(record.fields.back().name, L"$EXCEPTION_POINTERS");
  EXPECT_EQ(record.fields.back().type, VT_UI8);
  record.fields.pop_back();
  EXPECT_THAT(record.fields,
              ElementsAre(marker(L"<<ASSERT>>"), text(L"$Type", L"ASSERT"), number(L"Last Error Code", VT_UI4, 5),
                          test_support::RecordedField{L"HRESULT", VT_I4, std::to_wstring(E_POINTER), {}, 0},
                          text(L"Description", L"pMainMenu != 0"), this_thread(L"Thread ID"),
                          text(L"File", L"Some.cpp"), number(L"Line", VT_INT, 70), number(L"$Group", VT_INT, 9),
                          text(L"Function", L"some_function"), text(L"$FuncSig", L"void some_function(int)")));
}

TEST_F(AssertionRecord, LeavesOutWhatIsNotSet) {
  AsserterClass(location).assert_failed({});
  EXPECT_THAT(processed().fields,
              ElementsAre(marker(L"<<ASSERT>>"), text(L"$Type", L"ASSERT"), this_thread(L"Thread ID"),
                          text(L"File", L"Some.cpp"), number(L"Line", VT_INT, 70), text(L"Function", L"some_function"),
                          text(L"$FuncSig", L"void some_function(int)")));
}

TEST_F(AssertionRecord, CarriesAnHresultOfZero) {
  AsserterClass(location).assert_failed(L"x", S_OK);
  EXPECT_EQ(field_text(processed(), L"HRESULT"), L"0");
}

TEST_F(AssertionRecord, IsFilteredOnceFilledAndThenProcessed) {
  AsserterClass(location).assert_failed(L"x != 0");
  ASSERT_THAT(recorder.words(), ElementsAre(L"CREATE", L"FILTER", L"PROCESS"));
  const auto commands = recorder.commands();
  EXPECT_EQ(commands[1].fields, commands[2].fields);
  EXPECT_EQ(commands[1].record, commands[2].record);
}

TEST_F(AssertionRecord, ExceptionPointersLeadToTheContextAndAnEmptyException) {
  CONTEXT context{};
  bool looked = false;
  recorder.on_command([&](const RecordedCommand& command) {
    if (command.word != L"PROCESS") return;
    const auto* pointers =
        reinterpret_cast<const EXCEPTION_POINTERS*>(find_field(command, L"$EXCEPTION_POINTERS")->number);
    EXPECT_EQ(pointers->ContextRecord, &context);
    static constexpr EXCEPTION_RECORD empty{};
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): every byte is to be 0, padding too
    EXPECT_EQ(std::memcmp(pointers->ExceptionRecord, &empty, 152), 0);
    looked = true;
  });
  AsserterClass(location).assert_failed(L"x", std::nullopt, &context);
  EXPECT_TRUE(looked);
}

TEST_F(AssertionRecord, TextOutsideTheCodePageIsReportedUnchanged) {
  AsserterClass(location).assert_failed(L"\u89c4\u5219 \U0001F4C5 \xD800");
  EXPECT_EQ(field_text(processed(), L"Description"), L"\u89c4\u5219 \U0001F4C5 \xD800");
}

TEST_F(TraceRecord, HasItsFieldsInOrderAndTyped) {
  const int traced = 0;
  TracerClass(location, 9).trace(L"message", {3, &traced, 0.5, 4, 1.25});
  EXPECT_THAT(
      processed().fields,
      ElementsAre(text(L"$Type", L"TRACE"), text(L"$Message", L"message"), number(L"$Ident", VT_INT, 3),
                  text(L"File", L"Some.cpp"), number(L"Line", VT_INT, 70), number(L"$Group", VT_INT, 9),
                  this_thread(L"Thread ID"), text(L"Function", L"some_function"),
                  text(L"$FuncSig", L"void some_function(int)"),
                  number(L"Object", VT_UI8, reinterpret_cast<ULONGLONG>(&traced)),
                  test_support::RecordedField{L"$Delay", VT_R8, L"0.500000", {}, 0}, number(L"Count", VT_INT, 4),
                  test_support::RecordedField{L"$TotalTime", VT_R8, L"1.250000", {}, 0}));
}

TEST_F(TraceRecord, LeavesOutWhatIsNotSetButKeepsTheIdent) {
  TracerClass(location).trace({});
  EXPECT_THAT(names(processed()),
              ElementsAre(L"$Type", L"$Ident", L"File", L"Line", L"Thread ID", L"Function", L"$FuncSig"));
}

TEST_F(TraceRecord, IsProcessedWithoutAFilter) {
  TracerClass(location).trace(L"message");
  EXPECT_THAT(recorder.words(), ElementsAre(L"CREATE", L"PROCESS"));
}

TEST_F(TraceRecord, FormattedMessageTakesWideTextAndNumbers) {
  TracerClass(location).report(L"%s: %d of %x", L"\u89c4\u5219", -3, 0xAB);
  EXPECT_EQ(field_text(processed(), L"$Message"), L"\u89c4\u5219: -3 of ab");
}

TEST_F(ErrorRecord, HasItsFieldsInOrderAndTyped) {
  SetLastError(32);
  ShowError(location, 9).show(L"what happened");
  RecordedCommand record = processed();
  ASSERT_FALSE(record.fields.empty());
  EXPECT_EQ(record.fields.back().name, L"$EXCEPTION_POINTERS");
  record.fields.pop_back();
  EXPECT_THAT(record.fields,
              ElementsAre(marker(L"<<ERROR>>"), text(L"$Type", L"CREATE ERROR"), this_thread(L"$ThreadID"),
                          number(L"Last Error Code", VT_UI4, 32), text(L"Description", L"what happened"),
                          text(L"File", L"Some.cpp"), number(L"Line", VT_INT, 70), number(L"$Group", VT_INT, 9),
                          text(L"Function", L"some_function"), text(L"$FuncSig", L"void some_function(int)")));
}

TEST_F(ErrorRecord, LeavesOutWhatIsNotSet) {
  ShowError(location).show({});
  EXPECT_THAT(names(processed()), ElementsAre(L"<<ERROR>>", L"$Type", L"$ThreadID", L"File", L"Line", L"Function",
                                              L"$FuncSig", L"$EXCEPTION_POINTERS"));
}

TEST_F(ErrorRecord, IsProcessedWithoutAFilter) {
  ShowError(location).show(L"what happened");
  EXPECT_THAT(recorder.words(), ElementsAre(L"CREATE", L"PROCESS"));
}

TEST_F(ErrorRecord, CarriesTheFullContextOfTheReportingThread) {
  bool looked = false;
  const char near_the_stack = 0;
  recorder.on_command([&](const RecordedCommand& command) {
    if (command.word != L"PROCESS") return;
    const auto* pointers =
        reinterpret_cast<const EXCEPTION_POINTERS*>(find_field(command, L"$EXCEPTION_POINTERS")->number);
    EXPECT_EQ(pointers->ContextRecord->ContextFlags, 0x10000Bu);
    const auto stack = reinterpret_cast<ULONGLONG>(&near_the_stack);
    EXPECT_LT(pointers->ContextRecord->Rsp, stack);
    EXPECT_GT(pointers->ContextRecord->Rsp, stack - 0x10000);
    EXPECT_NE(pointers->ContextRecord->Rip, 0u);
    looked = true;
  });
  ShowError(location).show({});
  EXPECT_TRUE(looked);
}

TEST_F(ErrorRecord, CarriesAnInnerRecordAfterItsOwnFields) {
  IKV_SnagtrapUtil::IDebugObject* inner = nullptr;
  ASSERT_EQ(snagtrap_client().command(L"CREATE", nullptr, &inner), S_OK);
  ShowError(location).show({}, inner);
  const RecordedCommand record = processed();
  const auto* field = find_field(record, L"Inner");
  ASSERT_TRUE(field);
  EXPECT_EQ(field->type, VT_DISPATCH);
  EXPECT_EQ(field->number, reinterpret_cast<ULONGLONG>(static_cast<IDispatch*>(inner)));
  EXPECT_EQ(inner->Release(), 0u) << "the report must not keep the inner record";
}

TEST_F(StructuredExceptionRecord, HasItsFieldsInOrderAndTyped) {
  EXCEPTION_POINTERS pointers{};
  report_structured_exception(&pointers);
  EXPECT_THAT(processed().fields,
              ElementsAre(text(L"$Type", L"ERROR"), this_thread(L"Thread ID"),
                          number(L"$EXCEPTION_POINTERS", VT_UI8, reinterpret_cast<ULONGLONG>(&pointers))));
}

class RecordCreation : public RecorderTest {};

TEST_F(RecordCreation, FailureDropsTheReportAndIsKeptInTheReporter) {
  recorder.set_result(L"CREATE", E_OUTOFMEMORY);
  AsserterClass asserter(location);
  EXPECT_EQ(asserter.assert_failed(L"x"), E_FAIL) << "a report that was dropped";
  EXPECT_EQ(asserter.status(), E_OUTOFMEMORY);
  EXPECT_THAT(recorder.words(), ElementsAre(L"CREATE"));
}

TEST_F(RecordCreation, FailureThatStillCreatesARecordLeaksNothing) {
  const long before = recorder.live_objects();
  recorder.set_result(L"CREATE", E_FAIL, test_support::Out::created);
  TracerClass(location).trace(L"x");
  EXPECT_EQ(recorder.live_objects(), before);
  EXPECT_THAT(recorder.words(), ElementsAre(L"CREATE"));
}

TEST_F(RecordCreation, SuccessWithoutARecordCountsAsFailure) {
  for (const auto out : {test_support::Out::untouched, test_support::Out::null}) {
    recorder.reset();
    recorder.set_result(L"CREATE", S_OK, out);
    ShowError reporter(location);
    EXPECT_EQ(reporter.show(L"x"), E_FAIL);
    EXPECT_EQ(reporter.status(), E_FAIL);
    EXPECT_THAT(recorder.words(), ElementsAre(L"CREATE"));
  }
}

TEST_F(RecordCreation, FieldsThatTheLibraryRefusesAreLeftOut) {
  recorder.set_result(L"SetField", E_FAIL);
  EXPECT_EQ(AsserterClass(location).assert_failed(L"x"), S_OK);
  EXPECT_THAT(recorder.words(), ElementsAre(L"CREATE", L"FILTER", L"PROCESS"));
  EXPECT_THAT(processed().fields, IsEmpty());
}

TEST_F(RecordCreation, RefusedFilterDoesNotStopTheReport) {
  recorder.set_result(L"FILTER", E_FAIL);
  EXPECT_EQ(AsserterClass(location).assert_failed(L"x"), S_OK);
  EXPECT_EQ(recorder.commands(L"PROCESS").size(), 1u);
}

TEST_F(RecordCreation, EveryRecordIsReleased) {
  const long before = recorder.live_objects();
  TracerClass(location).trace(L"x");
  AsserterClass(location).assert_failed(L"x");
  ShowError(location).show(L"x");
  report_hresult(E_FAIL, location);
  EXPECT_EQ(recorder.live_objects(), before);
}

}  // namespace
}  // namespace diagnostics_test
