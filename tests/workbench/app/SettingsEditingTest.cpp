#include "MessagePump.h"
#include "ScheduleTest.h"
#include "Texts.h"
#include "WindowText.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;

/// The user at the dialog of a setting.
class SettingsEditingTest : public ScheduleTest {
 protected:
  /// Runs a command; `visit` acts in the dialog until that is closed, counting its visits from 1. Message boxes over
  /// the dialog are read and closed.
  void run(UINT command, const DialogDriver::Visit& visit) {
    const DialogDriver user(DialogDriver::When::shown, [&](HWND dialog, int number) {
      if (GetDlgItem(dialog, IDC_SETTING_NAME)) {
        visit(dialog, number);
      } else {
        boxes_.push_back(test_support::read_message_box(dialog).text);
        test_support::close_message_box(dialog);
      }
    });
    press(command);
    test_support::pump_messages();
  }

  long first_number() const { return store_->load_settings().front().number; }
  SymbolSourceSetting stored(size_t index) const { return store_->load_settings().at(index).setting; }

  std::vector<std::wstring> boxes_;
};

TEST_F(SettingsEditingTest, NewSettingIsStoredAndShown) {
  start_at_2026();
  run(IDM_ADD_SETTING, [](HWND dialog, int) {
    SetDlgItemTextW(dialog, IDC_SETTING_NAME, L"IC 中证500");
    choose_item(GetDlgItem(dialog, IDC_SETTING_RULE), 1);
    choose_item(GetDlgItem(dialog, IDC_SETTING_CALENDAR), 1);
    choose_item(GetDlgItem(dialog, IDC_SETTING_LAST_DAY), 1);
    CheckDlgButton(dialog, IDC_SETTING_FIRST_MONTH, BST_UNCHECKED);
    click(dialog, IDOK);
  });
  const SymbolSourceSetting expected{.name = L"IC 中证500",
                                     .rule_name = L"CSI 300",
                                     .calendar = L"sample",
                                     .months = L"GHJKMNQUVXZ",
                                     .last_day_is_expiration = true};
  EXPECT_EQ(stored(2), expected);
  EXPECT_EQ(cell_text(settings(), 2, 0), L"IC 中证500");
  EXPECT_EQ(cell_text(settings(), 2, 4), L"GHJKMNQUVXZ");
}

TEST_F(SettingsEditingTest, DialogShowsWhatIsStoredAndOkKeepsIt) {
  start_at_2026();
  focus(settings(), 1);
  const SymbolSourceSetting before = stored(1);
  std::wstring name;
  run(IDM_EDIT_SETTING, [&](HWND dialog, int) {
    name = base::window_text(GetDlgItem(dialog, IDC_SETTING_NAME));
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_SETTING_FIRST_MONTH + 2), static_cast<UINT>(BST_CHECKED));
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_SETTING_FIRST_MONTH), static_cast<UINT>(BST_UNCHECKED));
    click(dialog, IDOK);
  });
  EXPECT_EQ(name, L"IH");
  EXPECT_EQ(stored(1), before);
}

TEST_F(SettingsEditingTest, RuleAndCalendarThatAreNotThereAreKept) {
  start_at_2026();
  store_->update_setting(first_number(), {.name = L"IF", .rule_name = L"gone", .calendar = L"gone too"}, std::nullopt);
  test_support::pump_messages();
  run(IDM_EDIT_SETTING, [](HWND dialog, int) { click(dialog, IDOK); });
  EXPECT_EQ(stored(0).rule_name, L"gone");
  EXPECT_EQ(stored(0).calendar, L"gone too");
}

TEST_F(SettingsEditingTest, CancelStoresNothing) {
  start_at_2026();
  run(IDM_EDIT_SETTING, [](HWND dialog, int) {
    SetDlgItemTextW(dialog, IDC_SETTING_NAME, L"changed");
    click(dialog, IDCANCEL);
  });
  EXPECT_EQ(stored(0).name, L"IF");
}

TEST_F(SettingsEditingTest, SettingWithoutNameIsRefusedAndTheDialogStays) {
  start_at_2026();
  run(IDM_ADD_SETTING, [&](HWND dialog, int visit) { click(dialog, visit == 1 ? IDOK : IDCANCEL); });
  EXPECT_EQ(boxes_, std::vector<std::wstring>{text(IDS_SETTING_WITHOUT_NAME)});
  EXPECT_EQ(store_->load_settings().size(), 2u);
}

TEST_F(SettingsEditingTest, ChangeByAnotherProgramIsShownAndReplacedOnlyByASecondOk) {
  start_at_2026();
  run(IDM_EDIT_SETTING, [&](HWND dialog, int visit) {
    if (visit == 1) {
      store_->update_setting(first_number(), {.name = L"IF of another program", .rule_name = L"unused"}, std::nullopt);
      SetDlgItemTextW(dialog, IDC_SETTING_NAME, L"mine");
      click(dialog, IDOK);
      EXPECT_EQ(stored(0).name, L"IF of another program");
      return;
    }
    click(dialog, IDOK);
  });
  ASSERT_EQ(boxes_.size(), 1u);
  EXPECT_NE(boxes_.front().find(L"IF of another program"), std::wstring::npos);
  EXPECT_NE(boxes_.front().find(L"unused"), std::wstring::npos);
  EXPECT_EQ(stored(0).name, L"mine");
}

TEST_F(SettingsEditingTest, SettingThatAnotherProgramDeletedIsAddedByASecondOk) {
  start_at_2026();
  run(IDM_EDIT_SETTING, [&](HWND dialog, int visit) {
    if (visit == 1) {
      store_->delete_setting(first_number(), std::nullopt);
    }
    click(dialog, IDOK);
  });
  EXPECT_EQ(boxes_.size(), 1u);
  EXPECT_EQ(store_->load_settings().size(), 2u);
  EXPECT_EQ(stored(1).name, L"IF");
}

TEST_F(SettingsEditingTest, DeletedOnlyAfterYes) {
  start_at_2026();
  for (const int answer : {IDNO, IDYES}) {
    test_support::with_message_box([&] { press(IDM_DELETE_SETTING); }, answer);
    test_support::pump_messages();
    EXPECT_EQ(store_->load_settings().size(), answer == IDNO ? 2u : 1u);
  }
  EXPECT_EQ(stored(0).name, L"IH");
}

}  // namespace
}  // namespace workbench
