#include "MessagePump.h"
#include "ScheduleRecords.h"
#include "ScheduleTest.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "WindowText.h"

namespace workbench {
namespace {

using test_support::click;

/// The user at the dialog about the import of a calendar.
class CalendarDialogTest : public ScheduleTest {
 protected:
  CalendarDialogTest() { chosen_file_ = folder_.path() / L"days.csv"; }

  void write_file(const std::string& content) { ASSERT_TRUE(try_write_file(*chosen_file_, content)); }

  /// The calendar of the store with one more closed day, on which the rule has a date.
  static std::string changed_calendar() {
    return "# name: sample\n# from: 2025-01-01\n# to: 2026-12-31\ndate,reason\n2026-02-20,春节\n2026-03-20,new\n";
  }

  void in_dialog(const std::function<void(HWND dialog)>& act) {
    test_support::with_dialog([&] { press(IDM_IMPORT_CALENDAR); }, act);
  }

  static std::wstring changes(HWND dialog) { return base::window_text(GetDlgItem(dialog, IDC_CALENDAR_CHANGES)); }
  static bool can_import(HWND dialog) { return IsWindowEnabled(GetDlgItem(dialog, IDOK)); }

  schedule::Calendar stored(const std::string& name) {
    for (const StoredCalendar& calendar : store_->load_calendars())
      if (calendar.calendar.name == name) return calendar.calendar;
    return {};
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(CalendarDialogTest, ShowsWhatChangesAndThenReplacesTheCalendar) {
  start_at_2026();
  write_file(changed_calendar());
  in_dialog([&](HWND dialog) {
    EXPECT_NE(changes(dialog).find(L"2026-03-20  closed  new"), std::wstring::npos) << changes(dialog).c_str();
    EXPECT_NE(changes(dialog).find(L"IF       2026-03   2026-03-20         2026-03-23"), std::wstring::npos);
    EXPECT_EQ(stored("sample").closed.size(), 1u) << "nothing is changed yet";
    click(dialog, IDOK);
  });
  EXPECT_EQ(stored("sample").closed.size(), 2u);
  EXPECT_NE(message().find(L"sample"), std::wstring::npos);
  test_support::pump_messages();
  EXPECT_TRUE(IsWindowVisible(part(IDC_DISMISS))) << "old dates beside new ones";
}

TEST_F(CalendarDialogTest, CancelledImportChangesNothing) {
  start_at_2026();
  write_file(changed_calendar());
  in_dialog([](HWND dialog) { click(dialog, IDCANCEL); });
  EXPECT_EQ(stored("sample").closed.size(), 1u);
}

TEST_F(CalendarDialogTest, TheSameCalendarIsNotImported) {
  start_at_2026();
  write_file("# name: sample\n# from: 2025-01-01\n# to: 2026-12-31\ndate,reason\n2026-02-20,春节\n");
  in_dialog([&](HWND dialog) {
    EXPECT_FALSE(can_import(dialog));
    click(dialog, IDCANCEL);
  });
}

TEST_F(CalendarDialogTest, FileThatIsNoCalendarIsRefusedWithItsLines) {
  start_at_2026();
  write_file("# name: sample\n# from: 2025-01-01\n# to: 2026-12-31\ndate\nnonsense\n");
  const std::wstring said = test_support::with_message_box([&] { press(IDM_IMPORT_CALENDAR); }).text;
  EXPECT_NE(said.find(L"第 5 行"), std::wstring::npos) << said.c_str();
}

TEST_F(CalendarDialogTest, EventsNeedANameAndDays) {
  start_at_2026();
  chosen_file_ = folder_.path() / L"days.ICS";
  write_file("BEGIN:VCALENDAR\nBEGIN:VEVENT\nDTSTART;VALUE=DATE:20260403\nEND:VEVENT\nEND:VCALENDAR\n");
  in_dialog([&](HWND dialog) {
    EXPECT_FALSE(can_import(dialog));
    SetDlgItemTextW(dialog, IDC_CALENDAR_NAME, L"desk");
    SetDlgItemTextW(dialog, IDC_CALENDAR_FROM, L"2026-01-01");
    SetDlgItemTextW(dialog, IDC_CALENDAR_TO, L"2026-12");
    EXPECT_FALSE(can_import(dialog));
    SetDlgItemTextW(dialog, IDC_CALENDAR_TO, L"2026-12-31");
    EXPECT_NE(changes(dialog).find(L"2026-04-03"), std::wstring::npos);
    click(dialog, IDOK);
  });
  EXPECT_EQ(stored("desk").closed.size(), 1u);
}

/// Newer versions of the sample calendar and of one that the store does not have.
ShippedCalendars newer_calendars_of(const schedule::Calendar& sample) {
  ShippedCalendars shipped{{sample, sample}, 8};
  shipped.calendars[0].closed.push_back({sample.closed.back().day + std::chrono::days{28}, "new"});
  shipped.calendars[1].name = "added";
  return shipped;
}

TEST_F(CalendarDialogTest, OfferOfNewerCalendarsShowsWhatChanges) {
  start_at_2026();
  const ShippedCalendars shipped = newer_calendars_of(stored("sample"));
  test_support::with_dialog([&] { application_->offer_calendars(shipped); },
                            [&](HWND dialog) {
                              EXPECT_NE(changes(dialog).find(L"2026-03-20  closed  new"), std::wstring::npos);
                              EXPECT_NE(changes(dialog).find(L"IF       2026-03   2026-03-20         2026-03-23"),
                                        std::wstring::npos);
                              EXPECT_TRUE(changes(dialog).starts_with(L"sample\r\n")) << "whose days they are";
                              EXPECT_NE(changes(dialog).find(L"added"), std::wstring::npos);
                              EXPECT_EQ(stored("sample").closed.size(), 1u) << "nothing is changed yet";
                              click(dialog, IDOK);
                            });
  EXPECT_EQ(stored("sample"), shipped.calendars[0]);
  EXPECT_EQ(stored("added"), shipped.calendars[1]);
  application_->offer_calendars(shipped);  // shows no dialog
}

TEST_F(CalendarDialogTest, DeclinedOfferChangesNothingAndDoesNotComeAgain) {
  start_at_2026();
  const schedule::Calendar before = stored("sample");
  const ShippedCalendars shipped = newer_calendars_of(before);
  test_support::with_dialog([&] { application_->offer_calendars(shipped); },
                            [](HWND dialog) { click(dialog, IDCANCEL); });
  EXPECT_EQ(stored("sample"), before);
  EXPECT_EQ(stored("added"), schedule::Calendar());
  application_->offer_calendars(shipped);  // shows no dialog
}

TEST_F(CalendarDialogTest, OlderCalendarIsOfferedWhenTheStoreOpens) {
  schedule::Calendar older = schedule::shipped_calendars().front();
  older.closed.pop_back();
  store_->replace_calendars({{older, schedule::shipped_calendars_version - 1}});
  start_at_2026();
  std::wstring offered;
  const test_support::DialogDriver user([&](HWND dialog) {
    offered = changes(dialog);
    click(dialog, IDOK);
    PostMessageW(window(), WM_CLOSE, 0, 0);
  });
  const UINT_PTR limit = SetTimer(nullptr, 0, 20'000, [](HWND, UINT, UINT_PTR, DWORD) noexcept { PostQuitMessage(0); });
  application_->run(0);
  KillTimer(nullptr, limit);
  EXPECT_EQ(user.dialogs(), 1);
  EXPECT_NE(offered.find(from_schedule_text(older.name)), std::wstring::npos) << offered.c_str();
  EXPECT_EQ(stored(older.name), schedule::shipped_calendars().front());
}

}  // namespace
}  // namespace workbench
