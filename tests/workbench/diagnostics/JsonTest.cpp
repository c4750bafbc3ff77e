#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <nlohmann/json.hpp>

#include "Json.h"
#include "RandomCases.h"
#include "TestRecords.h"
#include "TextEncoding.h"

namespace snagtrap_test {
namespace {

using nlohmann::json;
using snagtrap::record_json;
using snagtrap::text_json;

std::string json_of(const VARIANT& value) {
  RecordPtr record = create_record();
  set(*record, L"v", value);
  const std::string text = record_json(*record);
  EXPECT_EQ(text.substr(0, 5), "{\"v\":");
  return text.substr(5, text.size() - 6);
}

TEST(JsonText, PlainTextIsQuoted) { EXPECT_EQ(text_json(L"some text"), "\"some text\""); }

TEST(JsonText, EveryPlaneIsWrittenAsUtf8) {
  EXPECT_EQ(text_json(L"\u00e4\u89c4\U0001F4C5"), "\"\u00e4\u89c4\U0001F4C5\"");
}

TEST(JsonText, LoneSurrogateBecomesTheReplacementCharacter) {
  EXPECT_EQ(text_json(L"\xD83D"), "\"\uFFFD\"");
  EXPECT_EQ(text_json(L"\xDCC5x"), "\"\uFFFDx\"");
  EXPECT_EQ(text_json(L"\xDCC5\xD83D"), "\"\uFFFD\uFFFD\"");
  EXPECT_EQ(text_json(L"\xD83D\xD83D\xDCC5"), "\"\uFFFD\U0001F4C5\"");
}

TEST(JsonText, EveryUnitOfUtf16ReadsBackAsItself) {
  for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
    const std::wstring text{L'a', static_cast<wchar_t>(unit), L'z'};
    const bool lone_surrogate = unit >= 0xD800 && unit <= 0xDFFF;
    const std::wstring expected = lone_surrogate ? L"a\uFFFDz" : text;
    ASSERT_EQ(base::from_utf8(json::parse(text_json(text)).get<std::string>()), expected)
        << "unit " << static_cast<unsigned>(unit);
  }
}

TEST(JsonText, AnyUtf16IsOneLineThatCanBeRead) {
  test_support::RandomCases random;
  for (int number = 0; number < 2000; ++number) {
    SCOPED_TRACE(random.trace(number));
    const std::string written = text_json(random.text_of_surrogates(11));
    ASSERT_TRUE(json::accept(written)) << written;
    ASSERT_EQ(written.find_first_of("\r\n"), std::string::npos);
  }
}

TEST(JsonText, LongerThanTheLimitIsCutAndMarked) {
  EXPECT_EQ(text_json(L"abc", 3), "\"abc\"");
  EXPECT_EQ(text_json(L"abcdef", 3), "\"abc...\"");
}

TEST(JsonText, CutInsideASurrogatePairStaysValid) { EXPECT_EQ(text_json(L"\U0001F4C5x", 1), "\"\uFFFD...\""); }

struct ValueRow {
  VARTYPE type;
  LONGLONG value;
  const char* json;
};

class JsonInteger : public testing::TestWithParam<ValueRow> {};

TEST_P(JsonInteger, IsWrittenAsItsTypeReads) {
  VARIANT value{};
  value.vt = GetParam().type;
  value.llVal = GetParam().value;
  EXPECT_EQ(json_of(value), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(OfEveryType, JsonInteger,
                         testing::Values(ValueRow{VT_EMPTY, 0, "null"}, ValueRow{VT_NULL, 0, "null"},
                                         ValueRow{VT_I1, -128, "-128"}, ValueRow{VT_UI1, 0xFF, "255"},
                                         ValueRow{VT_I2, -32768, "-32768"}, ValueRow{VT_UI2, 0xFFFF, "65535"},
                                         ValueRow{VT_I4, INT_MIN, "-2147483648"}, ValueRow{VT_INT, -1, "-1"},
                                         ValueRow{VT_UI4, 0xFFFFFFFF, "4294967295"},
                                         ValueRow{VT_UINT, 0xFFFFFFFF, "4294967295"},
                                         ValueRow{VT_I8, LLONG_MIN, "\"-9223372036854775808\""},
                                         ValueRow{VT_UI8, -1, "\"0xffffffffffffffff\""}, ValueRow{VT_BOOL, 0, "false"},
                                         ValueRow{VT_BOOL, 0xFFFF, "true"},
                                         ValueRow{VT_ERROR, static_cast<LONGLONG>(0x80004005), "\"0x80004005\""},
                                         ValueRow{VT_CY, 12500, "\"1.25\""}));

VARIANT real(double number) {
  VARIANT value{};
  value.vt = VT_R8;
  value.dblVal = number;
  return value;
}

TEST(JsonReal, ReadsBackAsItself) {
  for (const double number : {0.0, 0.5, -1.25, 1e300, 5e-324, 3.141592653589793}) {
    EXPECT_EQ(json::parse(json_of(real(number))), number);
  }
}

TEST(JsonReal, WithoutAJsonFormIsAText) {
  EXPECT_TRUE(json::parse(json_of(real(std::numeric_limits<double>::infinity()))).is_string());
  EXPECT_TRUE(json::parse(json_of(real(std::numeric_limits<double>::quiet_NaN()))).is_string());
}

TEST(JsonReal, KeepsItsPointInEveryLocale) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  ASSERT_TRUE(std::setlocale(LC_NUMERIC, "German_Germany.1252"));
  EXPECT_EQ(json_of(real(0.5)), "0.5");
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(JsonValue, DateIsATextWithoutRegardToTheUser) {
  VARIANT value{};
  value.vt = VT_DATE;
  value.date = 45418;  // 6 May 2024
  EXPECT_EQ(json_of(value).substr(0, 11), "\"05/06/2024");
}

TEST(JsonValue, ArrayIsNamedByItsType) {
  VARIANT value{};
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = SafeArrayCreateVector(VT_UI1, 0, 3);
  EXPECT_EQ(json_of(value), "\"VARIANT type 8209\"");
  VariantClear(&value);
}

TEST(JsonValue, ForeignObjectIsItsAddress) {
  VARIANT value{};
  value.vt = VT_DISPATCH;
  EXPECT_EQ(json_of(value), "\"0x0000000000000000\"");
}

TEST(JsonRecord, HasItsFieldsInTheirOrder) {
  RecordPtr record = create_record();
  set_number(*record, L"b", -1);
  set_text(*record, L"a \"quoted\" name", L"x");
  EXPECT_EQ(record_json(*record), R"({"b":-1,"a \"quoted\" name":"x"})");
  EXPECT_EQ(record_json(*create_record()), "{}");
}

TEST(JsonRecord, InnerRecordIsAnObject) {
  RecordPtr inner = create_record();
  set_text(*inner, L"Cause", L"x");
  RecordPtr outer = create_record();
  set_object(*outer, L"Inner", inner);
  EXPECT_EQ(record_json(*outer), R"({"Inner":{"Cause":"x"}})");
}

TEST(JsonRecord, TextsOfInnerRecordsAreCutToo) {
  RecordPtr inner = create_record();
  set_text(*inner, L"Cause", L"abc");
  RecordPtr outer = create_record();
  set_object(*outer, L"Inner", inner);
  EXPECT_EQ(record_json(*outer, 2), R"({"Inner":{"Cause":"ab..."}})");
}

TEST(JsonRecord, RecordsThatHoldEachOtherAreCutOff) {
  RecordPtr first = create_record();
  RecordPtr second = create_record();
  set_object(*first, L"Inner", second);
  set_object(*second, L"Inner", first);
  EXPECT_TRUE(json::parse(record_json(*first))["Inner"]["Inner"].is_object());
  set(*second, L"Inner", VARIANT{});
}

}  // namespace
}  // namespace snagtrap_test
