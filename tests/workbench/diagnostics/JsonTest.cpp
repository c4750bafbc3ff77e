#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "Json.h"
#include "JsonReader.h"
#include "RecordMaking.h"

namespace snagtrap_test {
namespace {

using snagtrap::JsonWriter;

std::string written(std::wstring_view text) {
  JsonWriter json;
  json.text(text);
  return json.json();
}

std::string json_of(const VARIANT& value) {
  RecordPtr record = make_record();
  set(*record, L"v", value);
  JsonWriter json;
  write_record(json, *record);
  const std::string text = json.json();
  EXPECT_EQ(text.substr(0, 5), "{\"v\":");
  return text.substr(5, text.size() - 6);
}

TEST(JsonText, PlainTextIsQuoted) { EXPECT_EQ(written(L"some text"), "\"some text\""); }

TEST(JsonText, QuotesBackslashesAndControlCharactersAreEscaped) {
  EXPECT_EQ(written(L"\"C:\\x\"\r\n\t\x01\x1f\x7f"), "\"\\\"C:\\\\x\\\"\\r\\n\\t\\u0001\\u001f\\u007f\"");
}

TEST(JsonText, EmbeddedNullIsEscaped) { EXPECT_EQ(written({L"a\0b", 3}), "\"a\\u0000b\""); }

TEST(JsonText, EveryPlaneIsWrittenAsUtf8) {
  EXPECT_EQ(written(L"\u00e4\u89c4\U0001F4C5"), "\"\xC3\xA4\xE8\xA7\x84\xF0\x9F\x93\x85\"");
}

TEST(JsonText, LoneSurrogatesAreEscaped) {
  EXPECT_EQ(written(L"\xD83D"), "\"\\ud83d\"");
  EXPECT_EQ(written(L"\xDCC5x"), "\"\\udcc5x\"");
  EXPECT_EQ(written(L"\xDCC5\xD83D"), "\"\\udcc5\\ud83d\"");
  EXPECT_EQ(written(L"\xD83D\xD83D\xDCC5"), "\"\\ud83d\xF0\x9F\x93\x85\"");
}

TEST(JsonText, EveryUnitOfUtf16ReadsBackAsItself) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const std::wstring text{L'a', static_cast<wchar_t>(unit), L'z'};
    ASSERT_EQ(read_json(written(text)).text, text) << "unit " << unit;
  }
}

TEST(JsonText, AnyUtf16ReadsBackAsItself) {
  std::mt19937 random(20240506);
  std::uniform_int_distribution<unsigned> surrogate_heavy(0xD700, 0xE0FF);
  for (int round = 0; round < 2000; ++round) {
    std::wstring text;
    for (unsigned length = random() % 12; length > 0; --length) {
      text += static_cast<wchar_t>(random() % 2 ? surrogate_heavy(random) : random() % 0x10000);
    }
    ASSERT_EQ(read_json(written(text)).text, text) << "round " << round;
  }
}

TEST(JsonText, LongerThanTheLimitIsCutAndMarked) {
  JsonWriter json;
  json.limit_texts(3);
  json.text(L"abcdef");
  EXPECT_EQ(json.json(), "\"abc...\"");
}

TEST(JsonText, CutInsideASurrogatePairStaysValid) {
  JsonWriter json;
  json.limit_texts(1);
  json.text(L"\U0001F4C5x");
  EXPECT_EQ(read_json(json.json()).text, L"\xD83D...");
}

TEST(JsonObject, SeparatesMembersAndNests) {
  JsonWriter json;
  json.begin_object();
  json.name(L"a");
  json.integer(-1);
  json.name(L"b");
  json.begin_object();
  json.end_object();
  json.name(L"c");
  json.literal("null");
  json.end_object();
  EXPECT_EQ(json.json(), R"({"a":-1,"b":{},"c":null})");
}

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
    EXPECT_EQ(std::strtod(read_json(json_of(real(number))).number.c_str(), nullptr), number);
  }
}

TEST(JsonReal, WithoutAJsonFormIsAText) {
  EXPECT_EQ(read_json(json_of(real(std::numeric_limits<double>::infinity()))).kind, Json::Kind::text);
  EXPECT_EQ(read_json(json_of(real(std::numeric_limits<double>::quiet_NaN()))).kind, Json::Kind::text);
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
  EXPECT_EQ(read_json(json_of(value)).text.substr(0, 10), L"05/06/2024");
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

TEST(JsonRecord, InnerRecordIsAnObject) {
  RecordPtr inner = make_record();
  set_text(*inner, L"Cause", L"x");
  RecordPtr outer = make_record();
  set_object(*outer, L"Inner", inner.get());
  JsonWriter json;
  write_record(json, *outer);
  EXPECT_EQ(json.json(), R"({"Inner":{"Cause":"x"}})");
}

TEST(JsonRecord, RecordsThatHoldEachOtherEndSomewhere) {
  RecordPtr first = make_record();
  RecordPtr second = make_record();
  set_object(*first, L"Inner", second.get());
  set_object(*second, L"Inner", first.get());
  JsonWriter json;
  write_record(json, *first);
  EXPECT_EQ(read_json(json.json())[L"Inner"][L"Inner"].kind, Json::Kind::object);
  set(*second, L"Inner", VARIANT{});
}

}  // namespace
}  // namespace snagtrap_test
