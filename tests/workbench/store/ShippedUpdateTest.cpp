#include <gtest/gtest.h>

#include "CalendarFile.h"
#include "MemoryRuleStore.h"
#include "ShippedUpdate.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

using Names = std::vector<std::string>;

/// A store whose calendars came with version 7, and version 8 of the same calendars: one changed, one is new.
class ShippedUpdate : public testing::Test {
 protected:
  ShippedUpdate() {
    store_.replace_calendars({sample_calendar("changed"), sample_calendar("same"), sample_calendar("mine")});
    shipped_.calendars[0].closed.pop_back();
  }

  /// The names that are offered, and how often the user is asked.
  Names offered(bool answer) {
    Names all;
    offer_newer_calendars(
        store_,
        [&](const std::vector<schedule::Calendar>& newer) {
          for (const schedule::Calendar& calendar : newer) all.push_back(calendar.name);
          return answer;
        },
        shipped_);
    return all;
  }

  schedule::Calendar stored(const std::string& name) {
    for (const StoredCalendar& calendar : store_.load_calendars())
      if (calendar.calendar.name == name) return calendar.calendar;
    return {};
  }

  MemoryRuleStore store_;
  ShippedCalendars shipped_{
      {sample_calendar("changed").calendar, sample_calendar("same").calendar, sample_calendar("new").calendar}, 8};
};

TEST_F(ShippedUpdate, WantedCalendarsTakeThePlaceOfOlderOnes) {
  EXPECT_EQ(offered(true), (Names{"changed", "new"}));
  EXPECT_EQ(stored("changed"), shipped_.calendars[0]);
  EXPECT_EQ(stored("new"), shipped_.calendars[2]);
  EXPECT_EQ(stored("mine"), sample_calendar("mine").calendar);
  EXPECT_EQ(offered(true), Names());
}

TEST_F(ShippedUpdate, DeclinedCalendarsAreNotOfferedAgainUntilTheNextVersion) {
  EXPECT_EQ(offered(false), (Names{"changed", "new"}));
  EXPECT_EQ(stored("changed"), sample_calendar("changed").calendar);
  EXPECT_EQ(offered(true), Names());
  shipped_.version = 9;
  EXPECT_EQ(offered(true), (Names{"changed", "new"}));
}

TEST_F(ShippedUpdate, OlderProgramOffersNothing) {
  shipped_.version = 6;
  EXPECT_EQ(offered(true), Names());
  EXPECT_EQ(stored("changed"), sample_calendar("changed").calendar);
}

TEST_F(ShippedUpdate, CalendarThatTheUserReplacedIsOfferedFromTheNextVersionOn) {
  StoredCalendar own = sample_calendar("changed");
  own.calendar.title = "own";
  own.shipped_version = 8;
  store_.replace_calendars({own});
  EXPECT_EQ(offered(true), Names());
  shipped_.version = 9;
  EXPECT_EQ(offered(false), (Names{"changed", "new"}));
}

TEST(ShippedCalendarsVersion, RisesWithTheCalendars) {
  // FNV-1a of the calendars as they are written. Whoever changes one raises the version and writes both down here.
  std::uint64_t hash = 14695981039346656037ULL;
  for (const schedule::Calendar& calendar : schedule::shipped_calendars())
    for (const char byte : schedule::write_calendar(calendar))
      hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
  EXPECT_EQ(schedule::shipped_calendars_version, 1);
  EXPECT_EQ(hash, 18376652063165009052ULL);
}

}  // namespace
