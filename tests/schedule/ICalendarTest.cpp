#include <algorithm>

#include "Ascii.h"
#include "ICalendar.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

const CalendarScope scope{"holidays", day("2026-01-01"), day("2026-12-31")};

const std::string good_events =
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:Public holidays\r\n"
    "BEGIN:VEVENT\r\nUID:1\r\nDTSTART;VALUE=DATE:20260501\r\nDTEND;VALUE=DATE:20260506\r\nSUMMARY:Labour\\, day\r\n"
    "BEGIN:VALARM\r\nDTSTART:nonsense\r\nEND:VALARM\r\nEND:VEVENT\r\n"
    "BEGIN:VEVENT\r\nDTSTART;VALUE=DATE:20260101\r\nSUMM\r\n ARY:New\r\n\t Year\r\nEND:VEVENT\r\n"
    "END:VCALENDAR\r\n";

std::string event_mistakes(std::string_view text) {
  const CalendarReading reading = read_icalendar(text, scope);
  EXPECT_EQ(reading.calendar.has_value(), reading.mistakes.empty());
  return messages_of(reading.mistakes, "f.ics");
}

/// The closed days of one event.
std::string days_of(const std::string& event) {
  const CalendarReading reading =
      read_icalendar("BEGIN:VCALENDAR\nBEGIN:VEVENT\n" + event + "\nEND:VEVENT\nEND:VCALENDAR", scope);
  std::string days;
  if (!reading.calendar) return "refused";
  for (const ClosedDay& closed : reading.calendar->closed) days += to_text(closed.day).substr(5) + " ";
  return days;
}

}  // namespace

TEST(ICalendar, AllDayEventsAreClosedDays) {
  EXPECT_EQ(event_mistakes(good_events), "");
  EXPECT_EQ(read_icalendar(good_events, scope).calendar, (Calendar{.name = "holidays",
                                                                   .title = "Public holidays",
                                                                   .from = scope.from,
                                                                   .to = scope.to,
                                                                   .closed = {{day("2026-01-01"), "New Year"},
                                                                              {day("2026-05-01"), "Labour, day"},
                                                                              {day("2026-05-04"), "Labour, day"},
                                                                              {day("2026-05-05"), "Labour, day"}}}));
}

TEST(ICalendar, EndIsTheDayAfterTheLast) {
  EXPECT_EQ(days_of("DTSTART:20260105"), "01-05 ");
  EXPECT_EQ(days_of("DTSTART:20260105\nDTEND:20260106"), "01-05 ");
  EXPECT_EQ(days_of("DTSTART:20260105\nDTEND:20260105"), "01-05 ");
  EXPECT_EQ(days_of("DTSTART:20260105\nDTEND:20260107"), "01-05 01-06 ");
  EXPECT_EQ(days_of("DTSTART:20260105\nDURATION:P2D"), "01-05 01-06 ");
  EXPECT_EQ(days_of("DTSTART:20260105\nDURATION:P1W"), "01-05 01-06 01-07 01-08 01-09 ");
}

TEST(ICalendar, DaysOfTheWeekendOrOutsideOrCancelledAreLeftOut) {
  EXPECT_EQ(days_of("DTSTART:20260103"), "");
  EXPECT_EQ(days_of("DTSTART:20251230\nDTEND:20260103"), "01-01 01-02 ");
  EXPECT_EQ(days_of("DTSTART:20261231\nDTEND:20270104"), "12-31 ");
  EXPECT_EQ(days_of("DTSTART:20260105\nSTATUS:cancelled"), "");
}

TEST(ICalendar, WhatIsNoAllDayEventIsRefusedWithItsLine) {
  EXPECT_EQ(event_mistakes(with(good_events, "DTSTART;VALUE=DATE:20260501", "DTSTART:20260501T090000Z")),
            "f.ics:6: expected an all-day event with days like 20260116, found \"DTSTART:20260501T090000Z\"\n");
  EXPECT_EQ(event_mistakes(with(good_events, "UID:1", "RRULE:FREQ=YEARLY")),
            "f.ics:5: expected an event that does not repeat, found \"RRULE:FREQ=YEARLY\"\n");
  EXPECT_EQ(event_mistakes(with(good_events, "UID:1", "rdate;value=date:20270501")),
            "f.ics:5: expected an event that does not repeat, found \"RDATE;VALUE=DATE:20270501\"\n");
  EXPECT_EQ(event_mistakes(with(good_events, "DTSTART;VALUE=DATE:20260501\r\n", "")),
            "f.ics:11: expected an event with DTSTART\n");
  EXPECT_EQ(event_mistakes(with(good_events, "20260506", "20260430")),
            "f.ics:12: expected an event that does not end before it starts\n");
  EXPECT_EQ(days_of("DTSTART:20260105\nDURATION:PT2H"), "refused");
  EXPECT_EQ(days_of("DTSTART:20260105\nDURATION:P0D"), "refused");
}

TEST(ICalendar, OtherFilesAreRefusedWithALine) {
  EXPECT_EQ(event_mistakes(""), "f.ics:1: expected END:VCALENDAR\n");
  EXPECT_EQ(event_mistakes("# name: x\n"),
            "f.ics:1: expected a line of an iCalendar file, found \"# name: x\"\nf.ics:1: expected END:VCALENDAR\n");
  EXPECT_EQ(event_mistakes(with(good_events, "END:VALARM", "END:VEVENT")).substr(0, 32),
            "f.ics:11: expected END:VALARM\nf.");
  EXPECT_EQ(event_mistakes(good_events + "more:x\r\n"),
            "f.ics:20: expected a line of an iCalendar file, found \"more:x\"\n");
  EXPECT_EQ(event_mistakes(with(good_events, "Labour", "\xFF")), "f.ics:8: expected UTF-8: save as UTF-8\n");
}

TEST(ICalendar, ScopeIsChecked) {
  EXPECT_EQ(describe(read_icalendar(good_events, {"a/b", scope.from, scope.to}).mistakes.at(0)),
            "expected a name of 1 to 255 characters that is not the name of a file, found \"a/b\"");
  EXPECT_EQ(describe(read_icalendar(good_events, {"x", scope.to, scope.from}).mistakes.at(0)),
            "expected a last day that is not before 2026-12-31, found 2026-01-01");
}

TEST(ICalendar, NamesMayBeInLowerCaseAndTheFirstLinesEmpty) {
  std::string text = "\xEF\xBB\xBF\r\n" + good_events;
  std::ranges::transform(text, text.begin(), to_ascii_lower);
  EXPECT_TRUE(is_icalendar(text));
  EXPECT_EQ(event_mistakes(text), "");
  EXPECT_EQ(read_icalendar(text, scope).calendar.value().closed.size(), 4U);
}

TEST(ICalendar, FileWithoutEventsIsRefused) {
  EXPECT_EQ(event_mistakes("BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VTIMEZONE\nEND:VTIMEZONE\nEND:VCALENDAR\n"),
            "f.ics:5: expected at least one event (BEGIN:VEVENT)\n");
}

TEST(ICalendar, Utf16IsRecognisedAndRefused) {
  for (const bool big_endian : {false, true}) {
    for (const bool marked : {false, true}) {
      const std::string mark = big_endian ? "\xFE\xFF" : "\xFF\xFE";
      const std::string bytes = (marked ? mark : "") + utf16(good_events, big_endian);
      EXPECT_TRUE(is_icalendar(bytes)) << big_endian << marked;
      EXPECT_EQ(event_mistakes(bytes), "f.ics:1: expected UTF-8: save as UTF-8\n") << big_endian << marked;
    }
  }
}

TEST(ICalendar, IsRecognised) {
  EXPECT_TRUE(
      is_icalendar("\xEF\xBB\xBF"
                   "BEGIN:VCALENDAR\r\n"));
  EXPECT_FALSE(is_icalendar("# name: x"));
}

TEST(ICalendarLine, IsFoldedBetweenCharacters) {
  std::string text;
  append_icalendar_line(text, "SUMMARY", std::string(66, 'x') + "\xE6\xB2\xAA" + std::string(80, 'y'));
  EXPECT_EQ(text, "SUMMARY:" + std::string(66, 'x') + "\r\n \xE6\xB2\xAA" + std::string(71, 'y') + "\r\n " +
                      std::string(9, 'y') + "\r\n");
}

TEST(ICalendarLine, TextsAreEscaped) { EXPECT_EQ(icalendar_text("a,b;c\\d\r\ne\tf"), "a\\,b\\;c\\\\d\\nef"); }

}  // namespace workbench::schedule
