#include <gtest/gtest.h>

#include "ScheduleSamples.h"
#include "YearMarks.h"

namespace workbench {
namespace {

class YearMarksTest : public testing::Test {
 protected:
  Marks marks_of(Day wanted) const {
    const auto marks = year_marks(schedule_, first_);
    const auto found = marks.find(wanted);
    return found == marks.end() ? Marks{} : found->second;
  }

  Month first_ = contract(2026, 1);
  Schedule schedule_ = make_schedule(sample_data(), choice_of_setting(1));
};

TEST_F(YearMarksTest, ClosedDaysAreThoseOfTheCalendar) {
  EXPECT_EQ(marks_of(day(2026, 2, 19)), mark_closed);
  EXPECT_EQ(marks_of(day(2026, 2, 21)), mark_weekend);
  EXPECT_EQ(marks_of(day(2026, 2, 18)), 0);
}

TEST_F(YearMarksTest, ExpirationAndRollAreMarkedOnTheirDays) {
  schedule_.lines.front().row.dates.roll.date = day(2026, 1, 14);
  EXPECT_EQ(marks_of(day(2026, 1, 16)), mark_expiration);
  EXPECT_EQ(marks_of(day(2026, 1, 14)), mark_roll);
  EXPECT_EQ(marks_of(day(2026, 2, 23)), mark_expiration | mark_roll) << "an offset of 0";
}

TEST_F(YearMarksTest, EstimatesAreMarkedBesides) {
  first_ = contract(2026, 12);
  schedule_ = make_schedule(sample_data(), {.setting = 1, .first = first_, .estimates = true});
  EXPECT_EQ(marks_of(day(2027, 1, 15)), mark_expiration | mark_roll | mark_estimate | mark_unknown);
  EXPECT_EQ(marks_of(day(2027, 1, 14)), mark_unknown);
}

TEST_F(YearMarksTest, DaysBeforeAChangeAreMarkedUnlessTheyStayed) {
  ScheduleLine& january = schedule_.lines.front();
  january.before = january.row.dates;
  january.before->roll.date = day(2026, 1, 12);
  EXPECT_EQ(marks_of(day(2026, 1, 12)), mark_old_roll);
  EXPECT_EQ(marks_of(day(2026, 1, 16)), mark_expiration | mark_roll);
}

TEST_F(YearMarksTest, DaysOutsideTheYearHaveNone) {
  schedule_.lines.front().row.dates.roll.date = day(2025, 12, 30);
  EXPECT_EQ(marks_of(day(2025, 12, 30)), 0);
}

TEST_F(YearMarksTest, WithoutCommonCalendarTheWeekendIsClosed) {
  schedule_.calendar.reset();
  EXPECT_EQ(marks_of(day(2026, 2, 19)), 0);
  EXPECT_EQ(marks_of(day(2026, 2, 21)), mark_weekend);
}

}  // namespace
}  // namespace workbench
