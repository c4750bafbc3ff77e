#include <gmock/gmock.h>

#include "ReportText.h"
#include "SnagtrapResource.h"
#include "TestRecords.h"

namespace snagtrap_test {
namespace {

using snagtrap::report_text;
using testing::HasSubstr;
using testing::Not;

RecordPtr record_of(const wchar_t* kind) {
  RecordPtr record = create_record();
  set_text(*record, L"$Type", kind);
  return record;
}

TEST(ReportText, OnlyAssertionsAndErrorsHaveACaption) {
  EXPECT_EQ(caption_of(*record_of(L"ASSERT")), static_cast<UINT>(IDS_ASSERTION_CAPTION));
  EXPECT_EQ(caption_of(*record_of(L"CREATE ERROR")), static_cast<UINT>(IDS_ERROR_CAPTION));
  EXPECT_EQ(caption_of(*record_of(L"ERROR")), static_cast<UINT>(IDS_EXCEPTION_CAPTION));
  EXPECT_FALSE(caption_of(*record_of(L"TRACE")));
  EXPECT_FALSE(caption_of(*record_of(L"")));
  EXPECT_FALSE(caption_of(*create_record()));
}

TEST(ReportText, DescriptionIsTheHeadline) {
  const RecordPtr record = record_of(L"ASSERT");
  set_text(*record, L"Description", L"field != 0");
  set_number(*record, L"HRESULT", E_FAIL, VT_I4);
  EXPECT_EQ(report_text(*record, IDS_ASSERTION_CAPTION, S_OK).headline, L"field != 0");
}

TEST(ReportText, FailedCallIsTheHeadlineWithoutADescription) {
  const RecordPtr record = record_of(L"ASSERT");
  set_number(*record, L"HRESULT", E_OUTOFMEMORY, VT_I4);
  EXPECT_THAT(report_text(*record, IDS_ASSERTION_CAPTION, S_OK).headline, HasSubstr(L"A call failed: 0x8007000e "));
}

TEST(ReportText, HeadlineSaysWhenNothingIsKnown) {
  EXPECT_EQ(report_text(*record_of(L"ASSERT"), IDS_ASSERTION_CAPTION, S_OK).headline, L"No description was given.");
}

TEST(ReportText, LastErrorHasTheSystemsMessage) {
  const RecordPtr record = record_of(L"ASSERT");
  set_number(*record, L"Last Error Code", ERROR_ACCESS_DENIED, VT_UI4);
  EXPECT_THAT(report_text(*record, IDS_ASSERTION_CAPTION, S_OK).details,
              HasSubstr(L"Last Error Code: 0x00000005 Access"));
}

TEST(ReportText, DetailsLeaveMarkersOut) {
  const RecordPtr record = record_of(L"ASSERT");
  set(*record, L"<<ASSERT>>", VARIANT{});
  EXPECT_THAT(report_text(*record, IDS_ASSERTION_CAPTION, S_OK).details, Not(HasSubstr(L"<<ASSERT>>")));
}

TEST(ReportText, InnerRecordIsIndented) {
  const RecordPtr record = record_of(L"CREATE ERROR");
  const RecordPtr inner = create_record();
  set_text(*inner, L"Cause", L"x");
  set_object(*record, L"Inner", inner);
  EXPECT_THAT(report_text(*record, IDS_ERROR_CAPTION, S_OK).details, HasSubstr(L"Inner: \r\n  Cause: x\r\n"));
}

TEST(ReportText, RecordsThatHoldEachOtherAreCutOff) {
  const RecordPtr first = record_of(L"CREATE ERROR");
  const RecordPtr second = create_record();
  set_object(*first, L"Inner", second);
  set_object(*second, L"Inner", first);
  EXPECT_FALSE(report_text(*first, IDS_ERROR_CAPTION, S_OK).details.empty());
  set(*second, L"Inner", VARIANT{});
}

TEST(ReportText, DetailsSayWhenTheLogCannotBeWritten) {
  const RecordPtr record = record_of(L"ASSERT");
  constexpr wchar_t warning[] = L"This report could not be written to the log:";
  EXPECT_THAT(report_text(*record, IDS_ASSERTION_CAPTION, E_ACCESSDENIED).details, HasSubstr(warning));
  EXPECT_THAT(report_text(*record, IDS_ASSERTION_CAPTION, S_OK).details, Not(HasSubstr(warning)));
}

TEST(RecentText, HasLineEndsOfAnEditControl) {
  EXPECT_EQ(snagtrap::recent_text("a\xC3\xA4\nb\n"), L"a\u00e4\r\nb\r\n");
}

}  // namespace
}  // namespace snagtrap_test
