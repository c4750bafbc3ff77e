#include "ShippedCalendars.h"
#include "StoreContract.h"

using namespace workbench;

namespace {

/// What every store does with calendars.
class CalendarStoreContract : public StoreContract {};

INSTANTIATE_TEST_SUITE_P(Stores, CalendarStoreContract, every_store(), store_name);

TEST_P(CalendarStoreContract, CalendarsComeByNameAndEachIsReplacedWhole) {
  const StoredCalendar other = sample_calendar("交易所 2");
  store_->replace_calendars({other, sample_calendar("exchange")});
  EXPECT_EQ(store_->load_calendars(), (std::vector{sample_calendar("exchange"), other}));
  StoredCalendar changed = sample_calendar("exchange");
  changed.calendar.title.clear();
  changed.calendar.weekend = 0;
  changed.calendar.closed.pop_back();
  changed.calendar.closed.front().reason = "another";
  changed.shipped_version = 8;
  store_->replace_calendars({changed});
  EXPECT_EQ(store_->load_calendars(), (std::vector{changed, other}));
  changed.calendar.closed.clear();
  store_->replace_calendars({changed});
  EXPECT_EQ(store_->load_calendars(), (std::vector{changed, other}));
}

TEST_P(CalendarStoreContract, ShippedCalendarsComeBackUnchanged) {
  std::vector<StoredCalendar> shipped;
  for (const schedule::Calendar& calendar : schedule::shipped_calendars()) shipped.push_back({calendar, 1});
  store_->replace_calendars(shipped);
  EXPECT_EQ(store_->load_calendars(), shipped);
}

TEST_P(CalendarStoreContract, CalendarThatNoFileCouldDescribeIsRefusedWithAllOthers) {
  using std::chrono::days;
  store_->replace_calendars({sample_calendar("exchange")});
  const auto refused = [&](auto change) {
    StoredCalendar invalid = sample_calendar("exchange");
    change(invalid.calendar);
    const auto error = refusal([&] { store_->replace_calendars({sample_calendar("new"), invalid}); });
    EXPECT_EQ(store_->load_calendars(), std::vector{sample_calendar("exchange")});
    return error && error->kind() == StoreErrorKind::invalid_value ? error->subject() : std::wstring();
  };
  using schedule::Calendar;
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.name = "a.csv"; }), L"name");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.title = "\xFF"; }), L"title");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.covers = "\xFF"; }), L"covers");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.source = "\xFF"; }), L"source");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.from = schedule::Day(days(-100'000)); }), L"from");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.to = schedule::Day(days(100'000)); }), L"to");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.to = calendar.from - days(1); }), L"to");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.weekend = schedule::every_weekday; }), L"weekend");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1] = calendar.closed[0]; }), L"date");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[0].day = calendar.from - days(1); }), L"date");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1].day = calendar.to + days(1); }), L"date");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1].day += days(4); }), L"date") << "it is a Friday";
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1].reason = "\xFF"; }), L"reason");
}

}  // namespace
