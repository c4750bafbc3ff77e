#include <algorithm>

#include "MessagePump.h"
#include "ProgressDialog.h"
#include "ScheduleTest.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "WindowText.h"
#include "WithinSeconds.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;

/// The user at the dialogs about lists of dates.
class DatesDialogsTest : public ScheduleTest {
 protected:
  void import_file(HWND dialog, const std::string& content) {
    chosen_file_ = folder_.path() / L"list.csv";
    ASSERT_TRUE(try_write_file(*chosen_file_, content));
    click(dialog, IDC_DATES_IMPORT);
  }

  static void choose_in(HWND dialog, int combo, int item) {
    choose_item(GetDlgItem(dialog, combo), item);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), 0);
  }

  static HWND results(HWND dialog) { return GetDlgItem(dialog, IDC_DATES_LIST); }
  static std::wstring messages(HWND dialog) { return base::window_text(GetDlgItem(dialog, IDC_DATES_MESSAGES)); }

  static bool shows(HWND dialog, const std::wstring& wanted) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      if (base::window_text(child) == wanted) return true;
    }
    return false;
  }

  void in_dialog(UINT command, const DialogDriver::Action& act) {
    test_support::with_dialog([&] { press(command); },
                              [&](HWND dialog) {
                                act(dialog);
                                click(dialog, IDCANCEL);
                              });
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(DatesDialogsTest, CheckShowsMatchesAndDifferencesWithTheExplainingDay) {
  start_at_2026();
  in_dialog(IDM_CHECK_DATES, [&](HWND dialog) {
    import_file(dialog,
                "rule,contract,date\nCSI 300,IF2601,2026-01-16\nCSI 300,IF2602,2026-02-20\ngone,2601,2026-01-16\n");
    ASSERT_EQ(ListView_GetItemCount(results(dialog)), 2);
    EXPECT_EQ(cell_text(results(dialog), 0, 0), L"CSI 300（1/2）");
    EXPECT_EQ(cell_text(results(dialog), 0, 4), L"0");
    EXPECT_EQ(cell_text(results(dialog), 1, 2), L"2026-02-20 五");
    EXPECT_EQ(cell_text(results(dialog), 1, 3), L"2026-02-23 一");
    EXPECT_EQ(cell_text(results(dialog), 1, 4), L"+3");
    EXPECT_EQ(cell_text(results(dialog), 1, 5), L"2026-02-20 五（春节）若开市");
    EXPECT_TRUE(shows(dialog, L"2 个日期：1 个一致，1 个不同。"));
    EXPECT_NE(messages(dialog).find(L"第 4 行"), std::wstring::npos);
    EXPECT_NE(messages(dialog).find(L"gone"), std::wstring::npos);
  });
}

TEST_F(DatesDialogsTest, CheckFollowsTheChosenDay) {
  start_at_2026();
  change_offset(1);
  in_dialog(IDM_CHECK_DATES, [&](HWND dialog) {
    import_file(dialog, "rule,contract,date\nCSI 300,IF2601,2026-01-16\n");
    EXPECT_EQ(cell_text(results(dialog), 0, 4), L"-1");
    choose_in(dialog, IDC_DATES_AGAINST, 2);
    EXPECT_EQ(cell_text(results(dialog), 0, 4), L"0");
  });
}

TEST_F(DatesDialogsTest, FileThatCannotBeReadIsNamed) {
  start_at_2026();
  in_dialog(IDM_CHECK_DATES, [&](HWND dialog) {
    chosen_file_ = folder_.path() / L"missing.csv";
    const std::wstring said = test_support::with_message_box([&] { click(dialog, IDC_DATES_IMPORT); }).text;
    EXPECT_NE(said.find(L"missing.csv"), std::wstring::npos);
  });
}

constexpr wchar_t third_fridays[] =
    L"IF2601,2026-01-16\r\nIF2602,2026-02-23\r\nIF2603,2026-03-20\r\nIF2604,2026-04-17\r\nIF2605,2026-05-15\r\n"
    L"IF2606,2026-06-19\r\nIF2607,2026-07-17\r\nIF2608,2026-08-21\r\nIF2609,2026-09-18\r\nIF2610,2026-10-16\r\n";

TEST_F(DatesDialogsTest, FoundRuleIsStoredAndOpenedInTheEditor) {
  start_at_2026();
  application_->load_plugin(real_module());
  std::wstring edited;
  const DialogDriver user([&](HWND dialog) {
    if (!GetDlgItem(dialog, IDC_FIND_DATES)) {  // the module's editor
      edited = base::window_text(FindWindowExW(dialog, nullptr, L"Edit", nullptr));
      click(dialog, IDCANCEL);
      return;
    }
    SetDlgItemTextW(dialog, IDC_FIND_DATES, third_fridays);
    choose_in(dialog, IDC_DATES_CALENDAR, 1);
    click(dialog, IDC_FIND_RUN);
    EXPECT_EQ(cell_text(results(dialog), 0, 1), L"10/10");
    EXPECT_EQ(cell_text(results(dialog), 0, 2), L"当月第 3 个星期五");
    EXPECT_TRUE(shows(dialog, L"恰有一条规则得出全部 10 个日期。"));
    SetDlgItemTextW(dialog, IDC_FIND_NAME, L"found");
    click(dialog, IDC_FIND_STORE);
  });
  press(IDM_FIND_RULE);
  test_support::pump_messages();
  EXPECT_EQ(edited, L"found");
  ASSERT_EQ(store_->load_rules().size(), 3u);
  EXPECT_EQ(store_->load_rules().back().rule.week_ordinal, 3);
  EXPECT_EQ(store_->load_rules().back().rule.move_to_next_trading_day, 1);
}

TEST_F(DatesDialogsTest, WithoutARuleForAllDatesTheBestAreShownWithWhatTheyMiss) {
  start_at_2026();
  in_dialog(IDM_FIND_RULE, [&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_FIND_DATES, (std::wstring(third_fridays) + L"IF2611,2026-11-03\r\n").c_str());
    choose_in(dialog, IDC_DATES_CALENDAR, 1);
    click(dialog, IDC_FIND_RUN);
    EXPECT_EQ(ListView_GetItemCount(results(dialog)), 10);
    EXPECT_EQ(cell_text(results(dialog), 0, 1), L"10/11");
    EXPECT_EQ(cell_text(results(dialog), 0, 5), L"2026-11");
  });
}

TEST_F(DatesDialogsTest, ClosedAndUnknownDaysAndWrongLinesAreNamed) {
  start_at_2026();
  in_dialog(IDM_FIND_RULE, [&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_FIND_DATES, L"IF2602,2026-02-20\r\nIF2702 2027-02-19\r\nnonsense\r\n");
    choose_in(dialog, IDC_DATES_CALENDAR, 1);
    click(dialog, IDC_FIND_RUN);
    EXPECT_NE(messages(dialog).find(L"休市：2026-02 2026-02-20 五"), std::wstring::npos);
    EXPECT_NE(messages(dialog).find(L"2027-02-19"), std::wstring::npos);
    EXPECT_NE(messages(dialog).find(L"第 3 行"), std::wstring::npos);
  });
}

TEST_F(DatesDialogsTest, FindingNeedsACalendarAndStoringAName) {
  start_at_2026();
  in_dialog(IDM_FIND_RULE, [&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_FIND_DATES, third_fridays);
    EXPECT_EQ(test_support::with_message_box([&] { click(dialog, IDC_FIND_RUN); }).text, text(IDS_CALENDAR_NEEDED));
    choose_in(dialog, IDC_DATES_CALENDAR, 1);
    click(dialog, IDC_FIND_RUN);
    const auto refused = [&](const wchar_t* name) {
      SetDlgItemTextW(dialog, IDC_FIND_NAME, name);
      return test_support::with_message_box([&] { click(dialog, IDC_FIND_STORE); }).text;
    };
    EXPECT_EQ(refused(L""), text(IDS_RULE_WITHOUT_NAME));
    EXPECT_EQ(refused(L"规则"), text(IDS_NAME_NOT_EDITED));
    EXPECT_NE(refused(L"CSI 300").find(L"CSI 300"), std::wstring::npos) << "another rule has the name";
  });
  EXPECT_EQ(store_->load_rules().size(), 2u);
}

TEST_F(DatesDialogsTest, FileThatIsNoListOfDatesIsNotShown) {
  start_at_2026();
  in_dialog(IDM_FIND_RULE, [&](HWND dialog) {
    HWND dates = GetDlgItem(dialog, IDC_FIND_DATES);
    EXPECT_GE(SendMessageW(dates, EM_GETLIMITTEXT, 0, 0), 300 * 12 * 30) << "a line for every month can be pasted";
    const std::wstring said =
        test_support::with_message_box([&] { import_file(dialog, std::string(600'000, 'x')); }).text;
    EXPECT_NE(said.find(L"list.csv"), std::wstring::npos);
    EXPECT_EQ(base::window_text(dates), L"");
  });
}

TEST_F(DatesDialogsTest, OnlyAsManyMessagesAreShownAsOneReads) {
  start_at_2026();
  std::string list = "rule,contract,date\n";
  for (int line = 0; line < 3000; ++line) list += "gone,x,y\n";
  in_dialog(IDM_CHECK_DATES, [&](HWND dialog) {
    import_file(dialog, list);
    const std::wstring shown = messages(dialog);
    EXPECT_EQ(std::ranges::count(shown, L'\n'), 1000);
    EXPECT_TRUE(shown.ends_with(L"..."));
  });
}

TEST_F(DatesDialogsTest, ImportedDatesAreSearchedAtOnce) {
  start_at_2026();
  in_dialog(IDM_FIND_RULE, [&](HWND dialog) {
    choose_in(dialog, IDC_DATES_CALENDAR, 1);
    import_file(dialog, "contract,date\n2026-01,2026-01-16\n2026-02,2026-02-23\n");
    EXPECT_GT(ListView_GetItemCount(results(dialog)), 1);
    EXPECT_EQ(base::window_text(GetDlgItem(dialog, IDC_FIND_DATES)),
              L"contract,date\r\n2026-01,2026-01-16\r\n2026-02,2026-02-23\r\n");
  });
}

TEST_F(DatesDialogsTest, LongWorkShowsItsProgressAndIsCancelled) {
  start_at_2026();
  ProgressDialog progress(window());
  const ULONGLONG began = GetTickCount64();
  EXPECT_TRUE(progress.go_on(0, 100));
  EXPECT_TRUE(IsWindowEnabled(window())) << "short work shows nothing";
  EXPECT_TRUE(test_support::within_seconds(20, [&] {
    if (HWND shown = GetLastActivePopup(window()); shown != window()) {
      EXPECT_FALSE(IsWindowEnabled(window()));
      PostMessageW(shown, WM_COMMAND, IDCANCEL, 0);
    }
    return !progress.go_on(50, 100);
  }));
  EXPECT_GE(GetTickCount64() - began, 1000u);
}

}  // namespace
}  // namespace workbench
