#include "MessagePump.h"
#include "ScheduleTest.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "WindowText.h"

namespace workbench {
namespace {

TEST_F(ScheduleTest, SelectedSettingGivesTwelveContracts) {
  start_at_2026();
  EXPECT_EQ(ListView_GetItemCount(list()), 12);
  EXPECT_EQ(cell_text(list(), 1, 0), L"IF");
  EXPECT_EQ(cell_text(list(), 1, 1), L"2026-02");
  EXPECT_EQ(cell_text(list(), 1, 2), L"2026-02-20 五");
  EXPECT_EQ(cell_text(list(), 1, 4), L"2026-02-23 一");
  EXPECT_EQ(cell_text(list(), 1, schedule_flags_column), L"闭市顺延");
}

TEST_F(ScheduleTest, SelectionOfAnotherSettingIsFollowed) {
  start_at_2026();
  focus(settings(), 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 4);
  EXPECT_EQ(cell_text(list(), 0, 0), L"IH");
}

TEST_F(ScheduleTest, SelectedRuleGivesEachSettingThatUsesIt) {
  start_at_2026();
  focus(rules(), 0);
  EXPECT_EQ(ListView_GetItemCount(list()), 16);
}

TEST_F(ScheduleTest, RuleWithoutSettingAsksForACalendarAndTakesTheChosenOne) {
  start_at_2026();
  focus(rules(), 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 0);
  EXPECT_NE(notice().find(L"没有交易日历"), std::wstring::npos);
  choose(IDC_CALENDAR, 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 12);
  EXPECT_EQ(cell_text(list(), 0, 4), L"2026-01-15 四");
}

TEST_F(ScheduleTest, RangeFollowsTheChoicesAndKeepsTheLastWholeMonth) {
  start_at_2026();
  choose(IDC_MONTHS, 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 3);
  choose_first_month(L"2025-0");
  EXPECT_EQ(cell_text(list(), 0, 1), L"2026-01");
  choose_first_month(L"2025-06");
  EXPECT_EQ(cell_text(list(), 0, 1), L"2025-06");
}

TEST_F(ScheduleTest, EstimatesAreShownOnDemandAndLookDifferent) {
  start_at_2026();
  choose_first_month(L"2027-01");
  EXPECT_EQ(cell_text(list(), 0, 4), L"—");
  EXPECT_EQ(cell_text(list(), 0, schedule_flags_column), L"! 超出日历");
  EXPECT_NE(notice().find(L"2027-01-01"), std::wstring::npos);
  press(IDM_ESTIMATES);
  EXPECT_EQ(cell_text(list(), 0, 4), L"≈ 2027-01-15 五");
  EXPECT_EQ(cell_text(list(), 0, schedule_flags_column), L"估计");
  EXPECT_EQ(SendMessageW(part(IDC_ESTIMATES), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_NE(notice().find(L"估计"), std::wstring::npos);
}

TEST_F(ScheduleTest, MonthsBeforeTheCalendarNameItsFirstDay) {
  start_at_2026();
  choose_first_month(L"2024-06");
  EXPECT_NE(notice().find(L"2025-01-01"), std::wstring::npos);
  press(IDM_ESTIMATES);
  EXPECT_NE(notice().find(L"2025-01-01"), std::wstring::npos);
  EXPECT_NE(notice().find(L"估计"), std::wstring::npos);
}

TEST_F(ScheduleTest, UnexpectedFailureIsSaidInThePane) {
  start_at_2026();
  // A calendar that the data do not have.
  SendMessageW(part(IDC_CALENDAR), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"gone"));
  choose(IDC_CALENDAR, 2);
  EXPECT_NE(notice().find(L"内部错误"), std::wstring::npos);
  EXPECT_EQ(ListView_GetItemCount(list()), 0);
  choose(IDC_CALENDAR, 0);
  EXPECT_EQ(ListView_GetItemCount(list()), 12) << "the next choice is shown again";
}

TEST_F(ScheduleTest, ChangedRuleShowsOldBesideNewForEverySettingUntilDismissed) {
  start_at_2026();
  change_offset(2);
  EXPECT_EQ(ListView_GetItemCount(list()), 16);
  EXPECT_EQ(cell_text(list(), 0, 4), L"2026-01-14 三");
  EXPECT_EQ(cell_text(list(), 0, 5), L"2026-01-16 五") << "the old roll day beside the new one";
  EXPECT_EQ(cell_text(list(), 0, 3), L"") << "the expiration day stayed";
  EXPECT_TRUE(IsWindowVisible(part(IDC_DISMISS)));
  focus(settings(), 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 16) << "a selection does not end it";

  SendMessageW(part(IDC_DISMISS), BM_CLICK, 0, 0);
  EXPECT_EQ(ListView_GetItemCount(list()), 4);
  EXPECT_EQ(cell_text(list(), 0, 4), L"2026-03-18 三");
  EXPECT_FALSE(IsWindowVisible(part(IDC_DISMISS)));
}

TEST_F(ScheduleTest, SecondChangeIsComparedWithTheDatesBeforeTheFirst) {
  start_at_2026();
  change_offset(2);
  change_offset(1);
  EXPECT_EQ(cell_text(list(), 0, 4), L"2026-01-15 四");
  EXPECT_EQ(cell_text(list(), 0, 5), L"2026-01-16 五");
  change_offset(0);
  EXPECT_FALSE(IsWindowVisible(part(IDC_DISMISS))) << "everything is as it was";
}

TEST_F(ScheduleTest, ChangeThatTouchesNoDateShowsNoComparison) {
  start_at_2026();
  store_->add_rule({.name = L"new"});
  test_support::pump_messages();
  EXPECT_FALSE(IsWindowVisible(part(IDC_DISMISS)));
  EXPECT_EQ(ListView_GetItemCount(list()), 12);
}

TEST_F(ScheduleTest, TabGoesThroughTheListsAndTheChoices) {
  start_at_2026();
  SetFocus(rules());
  std::vector<HWND> visited;
  for (int step = 0; step < 7; ++step) {
    press(IDM_NEXT_CONTROL);
    visited.push_back(GetFocus());
  }
  EXPECT_EQ(visited.at(0), settings());
  EXPECT_EQ(visited.at(1), part(IDC_CALENDAR));
  EXPECT_EQ(visited.at(5), list());
  EXPECT_EQ(visited.at(6), rules());
  press(IDM_PREVIOUS_CONTROL);
  EXPECT_EQ(GetFocus(), list());
}

TEST_F(ScheduleTest, NextPaneGoesFromListToList) {
  start_at_2026();
  SetFocus(rules());
  std::vector<HWND> visited;
  for (int step = 0; step < 3; ++step) {
    press(IDM_NEXT_PANE);
    visited.push_back(GetFocus());
  }
  EXPECT_EQ(visited, (std::vector<HWND>{settings(), list(), rules()}));
  press(IDM_PREVIOUS_PANE);
  EXPECT_EQ(GetFocus(), list());
}

TEST_F(ScheduleTest, EverythingIsInEnglishToo) {
  choose_language(Language::english);
  start_at_2026();
  EXPECT_EQ(cell_text(list(), 1, schedule_flags_column), L"moved");
  EXPECT_EQ(status(1), L"2 rules");
  EXPECT_EQ(base::window_text(window()), L"Expiration Rules Workbench");
}

TEST_F(ScheduleTest, YearIsDrawn) {
  start_at_2026();
  const HWND year = part(IDC_YEAR);
  RECT client{};
  GetClientRect(year, &client);
  EXPECT_GE(client.right, least_year_size(96).cx);
  EXPECT_GE(client.bottom, least_year_size(96).cy);
  InvalidateRect(year, nullptr, FALSE);
  UpdateWindow(year);
  EXPECT_FALSE(GetUpdateRect(year, nullptr, FALSE)) << "painting leaves nothing invalid";
}

class ScheduleExportTest : public ScheduleTest {
 protected:
  std::string exported(UINT command) {
    chosen_file_ = folder_.path() / L"日程.out";
    press(command);
    return try_read_file(*chosen_file_).value_or("");
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(ScheduleExportTest, FilesHoldWhatIsShown) {
  start_at_2026();
  EXPECT_NE(exported(IDM_EXPORT_CSV).find("CSI 300,IF,2026-02,2026-02-20,2026-02-23,2026-02-23,moved"),
            std::string::npos);
  EXPECT_NE(message().find(L"日程.out"), std::wstring::npos);
  EXPECT_NE(exported(IDM_EXPORT_ICALENDAR).find("DTSTART;VALUE=DATE:20260223"), std::string::npos);
  choose_first_month(L"2026-06");
  const std::string page = exported(IDM_EXPORT_HTML);
  EXPECT_NE(page.find("2026-02-23"), std::string::npos) << "the page shows the whole year";
  EXPECT_NE(page.find("lang=\"zh-CN\""), std::string::npos);
}

TEST_F(ScheduleExportTest, CancelledDialogWritesNothing) {
  start_at_2026();
  press(IDM_EXPORT_CSV);
  EXPECT_EQ(message().find(L"导出"), std::wstring::npos);
}

TEST_F(ScheduleExportTest, FileThatCannotBeWrittenIsReportedAndStays) {
  start_at_2026();
  chosen_file_ = folder_.path() / L"missing folder" / L"x.csv";
  const std::wstring seen = test_support::with_message_box([&] { press(IDM_EXPORT_CSV); }).text;
  EXPECT_NE(seen.find(L"无法写入"), std::wstring::npos);
}

TEST_F(ScheduleExportTest, WrittenFileTakesThePlaceOfTheOldOne) {
  const std::filesystem::path path = folder_.path() / L"x";
  EXPECT_TRUE(try_write_file(path, "a long old content"));
  EXPECT_TRUE(try_write_file(path, "new"));
  EXPECT_EQ(try_read_file(path), "new");
  EXPECT_FALSE(std::filesystem::exists(path.wstring() + L".part"));
  EXPECT_EQ(try_read_file(folder_.path() / L"missing"), std::nullopt);
}

TEST_F(ScheduleExportTest, CancelledFileStaysAsItWas) {
  const std::filesystem::path path = folder_.path() / L"x";
  ASSERT_TRUE(try_write_file(path, "old"));
  const std::string large(5 << 20, 'x');
  int left = 4;
  EXPECT_THROW(try_write_file(path, large, [&](size_t, size_t) { return --left > 0; }), schedule::Cancelled);
  EXPECT_EQ(left, 0) << "after some of it was written";
  EXPECT_EQ(try_read_file(path), "old");
  EXPECT_FALSE(std::filesystem::exists(path.wstring() + L".part"));
}

TEST_F(ScheduleTest, CopyPutsTheTableOnTheClipboard) {
  start_at_2026();
  press(IDM_COPY_SCHEDULE);
  EXPECT_EQ(message(), text(IDS_COPIED));
  ASSERT_TRUE(OpenClipboard(window()));
  const auto* copied = static_cast<const wchar_t*>(GlobalLock(GetClipboardData(CF_UNICODETEXT)));
  const std::wstring table = copied ? copied : L"";
  CloseClipboard();
  EXPECT_NE(table.find(L"2026-02-23"), std::wstring::npos);
  EXPECT_NE(table.find(L"\r\n"), std::wstring::npos);
  EXPECT_EQ(table.find(L"\r\r"), std::wstring::npos);
}

}  // namespace
}  // namespace workbench
