// What may take long can be cancelled in the window, with nothing half done.
#include "ProgressDialog.h"
#include "ScheduleTest.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "WindowText.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;

/// All work counts as long, and the user cancels the progress that is shown for it.
class CancellationTest : public ScheduleTest {
 protected:
  CancellationTest() { chosen_file_ = folder_.path() / L"file.csv"; }
  ~CancellationTest() override { ProgressDialog::delay_ms = usual_delay_; }

  /// Runs `work`. Returns how often the user cancelled.
  int cancel_while(const std::function<void()>& work) const {
    int cancelled = 0;
    const DialogDriver user(DialogDriver::When::created, [&](HWND dialog, int) {
      if (!GetDlgItem(dialog, IDC_PROGRESS)) return;
      click(dialog, IDCANCEL);
      ++cancelled;
    });
    ProgressDialog::delay_ms = 0;
    work();
    ProgressDialog::delay_ms = usual_delay_;
    return cancelled;
  }

  const ULONGLONG usual_delay_ = ProgressDialog::delay_ms;
  test_support::TemporaryFolder folder_;
};

TEST_F(CancellationTest, ExportLeavesTheFileAsItWas) {
  start_at_2026();
  for (const UINT command : {IDM_EXPORT_CSV, IDM_EXPORT_ICALENDAR, IDM_EXPORT_HTML}) {
    ASSERT_TRUE(try_write_file(*chosen_file_, "old"));
    EXPECT_EQ(cancel_while([&] { press(command); }), 1) << command;
    EXPECT_EQ(try_read_file(*chosen_file_), "old");
    EXPECT_FALSE(std::filesystem::exists(chosen_file_->wstring() + L".part"));
    EXPECT_EQ(message(), text(IDS_CANCELLED));
    EXPECT_TRUE(IsWindowEnabled(window()));
  }
}

TEST_F(CancellationTest, CopyLeavesTheClipboardAsItWas) {
  start_at_2026();
  const DWORD before = GetClipboardSequenceNumber();
  EXPECT_EQ(cancel_while([&] { press(IDM_COPY_SCHEDULE); }), 1);
  EXPECT_EQ(GetClipboardSequenceNumber(), before);
  EXPECT_EQ(message(), text(IDS_CANCELLED));
}

TEST_F(CancellationTest, PaneSaysThatItShowsNothingAndCanBeAskedAgain) {
  start_at_2026();
  EXPECT_EQ(cancel_while([&] { press(IDM_REFRESH), focus(rules(), 0); }), 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 0);
  EXPECT_EQ(notice(), text(IDS_SCHEDULE_CANCELLED));
  focus(settings(), 0);
  EXPECT_EQ(ListView_GetItemCount(list()), 12);
}

TEST_F(CancellationTest, CancelledComparisonCanBeShownLater) {
  start_at_2026();
  EXPECT_EQ(cancel_while([&] { change_offset(2); }), 1);
  EXPECT_EQ(notice(), text(IDS_SCHEDULE_CANCELLED));
  choose(IDC_MONTHS, 1);
  EXPECT_TRUE(IsWindowVisible(part(IDC_DISMISS)));
  EXPECT_EQ(cell_text(list(), 0, 5), L"2026-01-16 五") << "the old roll day beside the new one";
}

TEST_F(CancellationTest, SearchForARuleShowsNothing) {
  start_at_2026();
  test_support::with_dialog([&] { press(IDM_FIND_RULE); },
                            [&](HWND dialog) {
                              SetDlgItemTextW(dialog, IDC_FIND_DATES, L"IF2601,2026-01-16\r\nIF2602,2026-02-23\r\n");
                              choose_item(GetDlgItem(dialog, IDC_DATES_CALENDAR), 1);
                              EXPECT_EQ(cancel_while([&] { click(dialog, IDC_FIND_RUN); }), 1);
                              EXPECT_EQ(ListView_GetItemCount(GetDlgItem(dialog, IDC_DATES_LIST)), 0);
                              EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_FIND_STORE)));
                              click(dialog, IDCANCEL);
                            });
}

TEST_F(CancellationTest, CheckShowsNothing) {
  start_at_2026();
  ASSERT_TRUE(try_write_file(*chosen_file_, "rule,contract,date\nCSI 300,IF2601,2026-01-16\n"));
  test_support::with_dialog([&] { press(IDM_CHECK_DATES); },
                            [&](HWND dialog) {
                              EXPECT_EQ(cancel_while([&] { click(dialog, IDC_DATES_IMPORT); }), 1);
                              EXPECT_EQ(ListView_GetItemCount(GetDlgItem(dialog, IDC_DATES_LIST)), 0);
                              click(dialog, IDCANCEL);
                            });
}

TEST_F(CancellationTest, FileOfDatesIsNotRead) {
  start_at_2026();
  ASSERT_TRUE(try_write_file(*chosen_file_, "contract,date\n2026-01,2026-01-16\n"));
  test_support::with_dialog([&] { press(IDM_FIND_RULE); },
                            [&](HWND dialog) {
                              EXPECT_EQ(cancel_while([&] { click(dialog, IDC_DATES_IMPORT); }), 1);
                              EXPECT_EQ(base::window_text(GetDlgItem(dialog, IDC_FIND_DATES)), L"");
                              click(dialog, IDCANCEL);
                            });
}

TEST_F(CancellationTest, CalendarFileIsNotImported) {
  start_at_2026();
  for (const wchar_t* name : {L"days.csv", L"days.ics"}) {
    chosen_file_ = folder_.path() / name;
    ASSERT_TRUE(try_write_file(*chosen_file_, "# name: sample\n# from: 2025-01-01\n# to: 2026-12-31\ndate\n"));
    EXPECT_EQ(cancel_while([&] { press(IDM_IMPORT_CALENDAR); }), 1);
    EXPECT_EQ(message(), text(IDS_CANCELLED));
  }
  EXPECT_EQ(store_->load_calendars().front().calendar.closed.size(), 1u);
}

TEST_F(CancellationTest, FileIsReadPartByPart) {
  const std::string large(1 << 20, 'x');
  ASSERT_TRUE(try_write_file(*chosen_file_, large));
  size_t parts = 0;
  EXPECT_EQ(try_read_file(*chosen_file_,
                          [&](size_t done, size_t all) {
                            EXPECT_EQ(all, large.size());
                            EXPECT_LE(done, all);
                            ++parts;
                            return true;
                          }),
            large);
  EXPECT_GT(parts, 10u);
  EXPECT_THROW(try_read_file(*chosen_file_, [&](size_t, size_t) { return --parts > 5; }), schedule::Cancelled);
}

}  // namespace
}  // namespace workbench
