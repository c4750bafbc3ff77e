#include "ScheduleTest.h"
#include "TradingDays.h"

namespace workbench::schedule {

namespace {

using std::chrono::days;

TradingDays january() {
  const std::vector<Day> closed{day("2026-01-02"), day("2026-01-01"), day("2027-01-01")};
  return {day("2026-01-01"), day("2026-01-31"), saturday_and_sunday, closed};
}

}  // namespace

TEST(TradingDays, NumberZeroIsTheFirstOpenDay) {
  EXPECT_EQ(to_text(january().day_at(0)), "2026-01-05");
  EXPECT_EQ(january().number_at(day("2026-01-01")), 0);
  EXPECT_EQ(january().number_at(day("2026-01-05")), 0);
  EXPECT_EQ(january().number_at(day("2026-01-06")), 1);
}

TEST(TradingDays, WeekdaysAreOpenOutside) {
  EXPECT_EQ(to_text(january().day_at(-1)), "2025-12-31");
  EXPECT_EQ(january().number_at(day("2025-12-31")), -1);
  EXPECT_EQ(to_text(january().day_at(20)), "2026-02-02");
  EXPECT_TRUE(january().is_open(day("2027-01-01"))) << "a closed day outside the calendar does not count";
  EXPECT_FALSE(january().is_open(day("2026-02-01")));
}

TEST(TradingDays, NumbersAndDaysAreEachOthersInverse) {
  // Every weekend but that of the whole week, from each day of a week on.
  for (unsigned weekend = 0; weekend < every_weekday; ++weekend) {
    const Day from = day("2026-01-01") + days{weekend % 7};
    const std::vector<Day> closed{from, from + days{9}, from + days{10}, from + days{20}};
    const TradingDays calendar(from, from + days{20}, static_cast<WeekdaySet>(weekend), closed);
    for (Day each = from - days{30}; each < from + days{60}; each += days{1}) {
      const std::int64_t number = calendar.number_at(each);
      if (calendar.is_open(each)) {
        EXPECT_EQ(calendar.day_at(number), each) << weekend;
      } else {
        EXPECT_GT(calendar.day_at(number), each) << weekend;
        EXPECT_LT(calendar.day_at(number - 1), each) << weekend;
      }
    }
  }
}

TEST(TradingDays, DaysBeforeTheEpochHaveTheirWeekday) {
  const TradingDays calendar(day("1900-01-01"), day("1900-01-31"), saturday_and_sunday, {});
  EXPECT_TRUE(calendar.is_open(day("1900-01-01"))) << "a Monday";
  EXPECT_FALSE(calendar.is_open(day("1900-01-06")));
  EXPECT_EQ(to_text(calendar.day_at(5)), "1900-01-08");
  EXPECT_EQ(to_text(calendar.day_at(-1)), "1899-12-29") << "outside the calendar";
  EXPECT_EQ(calendar.number_at(day("1900-02-05")), 25);
  EXPECT_FALSE(calendar.is_open(day("1900-02-04")));
}

TEST(Dates, ParseOnlyTheirForm) {
  EXPECT_TRUE(try_parse_day("2024-02-29"));
  EXPECT_TRUE(try_parse_day("1900-01-01"));
  EXPECT_TRUE(try_parse_day("2199-12-31"));
  for (const char* text :
       {"", "2026-1-16", "2026-01-1", "2026/01/16", "20260116", "2026-02-29", "2026-00-01", "2026-01-00", "2026-13-01",
        "2026-01-32", "1899-12-31", "2200-01-01", "2026-01-16 ", "+026-01-16", "2026-01-1x", "-026-01-16"})
    EXPECT_FALSE(try_parse_day(text)) << text;
  EXPECT_EQ(to_text(month("2026-12")), "2026-12");
  for (const char* text : {"", "2026", "2026-00", "2026-13", "202601", "2026-1", "2026-011"})
    EXPECT_FALSE(try_parse_month(text)) << text;
}

}  // namespace workbench::schedule
