#include "Csv.h"
#include "RandomCases.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

using Fields = std::vector<std::string>;

/// The records' fields of a text without mistakes.
std::vector<Fields> fields_of(std::string_view text) {
  const CsvRecords read = read_csv(text);
  EXPECT_TRUE(read.mistakes.empty()) << text;
  std::vector<Fields> fields;
  for (const CsvRecord& record : read.records) fields.push_back(record.fields);
  return fields;
}

using Records = std::vector<Fields>;

}  // namespace

TEST(Csv, LinesEndInEachOfTheThreeWays) {
  EXPECT_EQ(fields_of("a,b\r\nc,d\ne,f\rg,h"), (Records{{"a", "b"}, {"c", "d"}, {"e", "f"}, {"g", "h"}}));
}

TEST(Csv, QuotedFieldsHoldSeparatorsQuotesAndLineBreaks) {
  EXPECT_EQ(fields_of("\"a,b\",\"say \"\"hi\"\"\",\"1\r\n2\n3\"\r\n"), (Records{{"a,b", "say \"hi\"", "1\r\n2\n3"}}));
}

TEST(Csv, EmptyFieldsCountAndEmptyLinesDoNot) {
  EXPECT_EQ(fields_of("a,\n\n,\n\"\"\n\n"), (Records{{"a", ""}, {"", ""}, {""}}));
}

TEST(Csv, TabsInTheFirstLineSeparate) {
  EXPECT_EQ(fields_of("a\tb,c\nd,e\tf\n"), (Records{{"a", "b,c"}, {"d,e", "f"}}));
}

TEST(Csv, LinesAreCountedThroughQuotedBreaks) {
  const CsvRecords read = read_csv("a\n\"x\ny\r\nz\"\n\nb");
  ASSERT_EQ(read.records.size(), 3U);
  EXPECT_EQ(read.records[1].line, 2U);
  EXPECT_EQ(read.records[2].line, 6U);
}

TEST(Csv, ByteOrderMarksNameTheEncoding) {
  EXPECT_EQ(fields_of("\xEF\xBB\xBF\xE6\xB2\xAA"), (Records{{"\xE6\xB2\xAA"}}));
  EXPECT_EQ(fields_of(std::string("\xFF\xFE\xAA\x6C,\0"
                                  "b\0",
                                  8)),
            (Records{{"\xE6\xB2\xAA", "b"}}));
  EXPECT_EQ(fields_of(std::string("\xFE\xFF\x6C\xAA\xD8\x3D\xDE\x00", 8)), (Records{{"\xE6\xB2\xAA\xF0\x9F\x98\x80"}}));
}

TEST(Csv, WhatIsNeitherUtf8NorUtf16IsRefusedWithItsLine) {
  for (const std::string_view text :
       {std::string_view("a\n\x80"), std::string_view("a\n\xC0\x80"), std::string_view("a\n\xED\xA0\x80"),
        std::string_view("a\n\xF4\x90\x80\x80"), std::string_view("a\n\xE6\xB2"),
        std::string_view("\xFF\xFE"
                         "a\0\n\0\x00\xD8",
                         8),
        std::string_view("\xFF\xFE"
                         "a\0\n\0\x00\xDC",
                         8),
        std::string_view("\xFF\xFE"
                         "a\0\n\0b",
                         7)}) {
    const CsvRecords read = read_csv(text);
    ASSERT_EQ(read.mistakes.size(), 1U);
    EXPECT_EQ(read.mistakes[0], (Mistake{2, MistakeKind::not_text}));
  }
}

TEST(Csv, BrokenQuotesAreNamedAndTheRestIsRead) {
  const CsvRecords read = read_csv("a\nb\"c\n\"d\"e\nf\n\"g");
  ASSERT_EQ(read.mistakes.size(), 3U);
  EXPECT_EQ(read.mistakes[0], (Mistake{2, MistakeKind::misplaced_quote, {"b\"c"}}));
  EXPECT_EQ(read.mistakes[1], (Mistake{3, MistakeKind::misplaced_quote, {"\"d\"e"}}));
  EXPECT_EQ(read.mistakes[2], (Mistake{5, MistakeKind::unterminated_quote}));
  ASSERT_EQ(read.records.size(), 2U);
  EXPECT_EQ(read.records[1].fields, Fields{"f"});
}

TEST(Csv, WhatIsWrittenIsReadBack) {
  test_support::RandomCases random;
  const std::vector<std::string> parts{"a", ",", "\"", "\r", "\n", "\t", " ", "\xE6\xB2\xAA", ""};
  for (int number = 0; number < 2000; ++number) {
    Records records(1 + random.below(3));
    std::string text;
    // The first line decides on the separator.
    append_csv(text, {"first", "line"});
    for (Fields& fields : records) {
      fields.resize(1 + random.below(3));
      for (std::string& field : fields) {
        for (unsigned left = random.below(4); left > 0; --left) field += parts[random.below(9)];
      }
      append_csv(text, fields);
    }
    records.insert(records.begin(), Fields{"first", "line"});
    ASSERT_EQ(fields_of(text), records) << random.trace(number);
  }
}

}  // namespace workbench::schedule
