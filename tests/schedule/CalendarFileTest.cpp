#include "CalendarFile.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

const std::string good =
    "# name: test\n# title: A test\n# from: 2026-01-01\n# to: 2026-12-31\n# weekend: Saturday, Sunday\n"
    "date,reason\n2026-01-01,New Year\n2026-05-01,\"Labour, and \"\"more\"\"\"\n";

/// The messages about a file that is refused.
std::string messages(std::string_view text) {
  const CalendarReading reading = read_calendar(text);
  EXPECT_EQ(reading.calendar.has_value(), reading.mistakes.empty());
  return messages_of(reading.mistakes, "f.csv");
}

}  // namespace

TEST(CalendarFile, IsRead) {
  const CalendarReading reading = read_calendar(good);
  ASSERT_TRUE(reading.calendar);
  EXPECT_EQ(*reading.calendar,
            (Calendar{.name = "test",
                      .title = "A test",
                      .from = day("2026-01-01"),
                      .to = day("2026-12-31"),
                      .closed = {{day("2026-01-01"), "New Year"}, {day("2026-05-01"), "Labour, and \"more\""}}}));
}

TEST(CalendarFile, NeedsOnlyNameAndRange) {
  const CalendarReading reading =
      read_calendar("\xEF\xBB\xBF# name: bare\r\n# from: 2026-01-01\r\n# to: 2026-01-01\r\ndate");
  ASSERT_TRUE(reading.calendar) << messages("# name: bare\r\n# from: 2026-01-01\r\n# to: 2026-01-01\r\ndate");
  EXPECT_EQ(reading.calendar->weekend, saturday_and_sunday);
  EXPECT_TRUE(reading.calendar->closed.empty());
}

TEST(CalendarFile, WeekendsAreWeekdays) {
  const auto weekend = [](std::string_view text) {
    return read_calendar(with(good, "Saturday, Sunday", text)).calendar;
  };
  EXPECT_EQ(weekend("Saturday,Monday").value().weekend, 0b1000010);
  EXPECT_EQ(weekend("none").value().weekend, 0);
  EXPECT_EQ(weekend("Sunday").value().weekend, 1);
}

TEST(CalendarFile, EachMistakeIsReportedWithItsLineAndWhatWasExpected) {
  EXPECT_EQ(messages(with(good, "2026-05-01", "2026-05-32")),
            "f.csv:8: expected a day like 2026-01-16, from 1900 to 2199; found \"2026-05-32\"\n");
  EXPECT_EQ(messages(with(good, "2026-05-01", "2026-01-01")),
            "f.csv:8: expected each day once, found 2026-01-01 again\n");
  EXPECT_EQ(messages(with(good, "2026-01-01,N", "2026-06-01,N")),
            "f.csv:8: expected a day after 2026-06-01, found 2026-05-01\n");
  EXPECT_EQ(messages(with(good, "2026-05-01", "2026-05-02")),
            "f.csv:8: expected a day that is not on the weekend, found 2026-05-02\n");
  EXPECT_EQ(messages(with(good, "2026-05-01", "2027-05-03")),
            "f.csv:8: expected a day from 2026-01-01 to 2026-12-31, found 2027-05-03\n");
  EXPECT_EQ(messages(with(good, "New Year", "New,Year")), "f.csv:7: expected 2 fields, found 3\n");
  EXPECT_EQ(messages(with(good, ",New Year", "")), "f.csv:7: expected 2 fields, found 1\n");
  EXPECT_EQ(messages(with(good, "date,reason", "day")),
            "f.csv:6: expected the line of columns \"date\" or \"date,reason\", found \"day\"\n");
  EXPECT_EQ(messages(with(good, "name: test", "name: a/b")),
            "f.csv:1: expected a name of 1 to 255 characters that is not the name of a file, found \"a/b\"\n");
  EXPECT_EQ(messages(with(good, "2026-12-31", "2025-12-31")),
            "f.csv:4: expected a last day that is not before 2026-01-01, found 2025-12-31\n");
  EXPECT_EQ(messages(with(good, "from: 2026-01-01", "from: tomorrow")),
            "f.csv:3: expected a day like 2026-01-16, from 1900 to 2199; found \"tomorrow\"\n");
  EXPECT_EQ(messages(with(good, "Saturday, Sunday", "Saturday,")),
            "f.csv:5: expected weekdays like \"Saturday, Sunday\", at most six, or \"none\"; found \"Saturday,\"\n");
  EXPECT_EQ(messages(with(good, "title", "name")), "f.csv:2: expected the key name only once\n");
  EXPECT_EQ(messages(with(good, "title", "colour")),
            "f.csv:2: expected \"# key: value\" with one of the keys name, title, covers, from, to, weekend, source; "
            "found \"# colour: A test\"\n");
  EXPECT_EQ(messages(with(good, "New Year", "Neujahr\xE4")), "f.csv:7: expected UTF-8: save as UTF-8\n");
  EXPECT_EQ(messages(with(good, "\"Labour", "\"\"Labour")),
            "f.csv:8: expected quotation marks around the whole field, and doubled within it; "
            "found \"\"\"Labour\"\n"
            "f.csv:8: expected quotation marks around the whole field, and doubled within it; "
            "found \" and \"\"more\"\"\"\"\n");
  EXPECT_EQ(messages(with(good, "more\"\"\"", "more")), "f.csv:8: expected a quotation mark that ends the field\n");
}

TEST(CalendarFile, Utf16IsRefusedWithTheRightMessage) {
  for (const std::string mark : {"", "\xFF\xFE"})
    EXPECT_EQ(messages(mark + utf16(good)), "f.csv:1: expected UTF-8: save as UTF-8\n") << mark.size();
}

TEST(CalendarFile, MissingKeysAreNamed) {
  for (const std::string key : {"name", "from", "to"}) {
    const std::size_t begin = good.find("# " + key + ":");
    std::string text = good;
    text.erase(begin, good.find('\n', begin) + 1 - begin);
    EXPECT_EQ(messages(text), "f.csv:5: expected a line \"# " + key + ": ...\" above the days\n");
  }
}

TEST(CalendarFile, EveryMistakeIsReported) {
  EXPECT_EQ(messages("# from: x\n# to: y\ndate\nz\n"),
            "f.csv:1: expected a day like 2026-01-16, from 1900 to 2199; found \"x\"\n"
            "f.csv:2: expected a day like 2026-01-16, from 1900 to 2199; found \"y\"\n"
            "f.csv:3: expected a line \"# name: ...\" above the days\n"
            "f.csv:4: expected a day like 2026-01-16, from 1900 to 2199; found \"z\"\n");
}

TEST(CalendarFile, MessagesExistInBothLanguages) {
  for (int kind = 0; kind < static_cast<int>(MistakeKind::last_kind); ++kind) {
    const Mistake mistake{1, static_cast<MistakeKind>(kind), {"<1>", "<2>", "<3>"}};
    const std::string english = describe(mistake, Language::english);
    const std::string chinese = describe(mistake, Language::chinese);
    EXPECT_NE(english, chinese);
    for (const char* parameter : {"<1>", "<2>", "<3>"})
      EXPECT_EQ(english.find(parameter) == english.npos, chinese.find(parameter) == chinese.npos) << english;
  }
}

TEST(CalendarFile, MessagesAreOnePrintableLine) {
  EXPECT_EQ(describe({1, MistakeKind::day, {std::string("a\r\n\0\x80", 5) + std::string(100, 'x')}}),
            "expected a day like 2026-01-16, from 1900 to 2199; found \"a????" + std::string(55, 'x') + "...\"");
}

TEST(CalendarFile, WrittenIsReadBack) {
  for (const Calendar& calendar : shipped_calendars()) {
    EXPECT_EQ(read_calendar(write_calendar(calendar)).calendar, calendar) << calendar.name;
  }
  const Calendar calendar = read_calendar(good).calendar.value();
  EXPECT_EQ(read_calendar(write_calendar(calendar)).calendar, calendar);
  EXPECT_EQ(write_calendar(calendar), good);
}

TEST(CalendarFile, SevenAreShipped) {
  std::string names;
  for (const Calendar& calendar : shipped_calendars()) names += calendar.name + " ";
  EXPECT_EQ(names, "china-futures eurex hong-kong-futures japan-futures korea-futures singapore-futures us-futures ");
}

}  // namespace workbench::schedule
