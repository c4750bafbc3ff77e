#include "EditorTest.h"
#include "Input.h"
#include "SentMessages.h"
#include "WindowText.h"
#include "string_t.h"

namespace editor_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using EditorFill = EditorTest;

TEST_F(EditorFill, TitleDiffersBetweenEditingAndAdding) {
  edit([](Editor& editor) {
    EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_EDIT_RULE_TITLE), base::window_text(editor.window()));
  });
  edit(0, [](Editor& editor) {
    EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_ADD_RULE_TITLE), base::window_text(editor.window()));
  });
}

TEST_F(EditorFill, OpensTheRulesTableByItsNumber) {
  edit([](Editor&) {});
  EXPECT_THAT(std::vector<std::string>(host.calls().all().begin(), host.calls().all().begin() + 4),
              ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                          "IkvRuleFilter::SetRuleID(5)", "IkvExpirationRuleService::load_rules(object, object)"));
}

TEST_F(EditorFill, CreatesASeparateRowForANewRule) {
  edit(0, [](Editor& editor) {
    EXPECT_EQ(resource_string::resourse_2_string_impl(IDS_NEW_RULE_NAME), editor.text(IDC_NAME));
  });
  EXPECT_THAT(host.calls().all("IkvExpirationRuleService"), IsEmpty());
}

TEST_F(EditorFill, ReadsEachFieldOnceInTheOrderOfTheControls) {
  edit([](Editor&) {});
  EXPECT_THAT(host.calls().all("IkvField::"),
              ElementsAre("IkvField::GetText(1077)", "IkvField::GetLong(1079)", "IkvField::GetLong(1078)",
                          "IkvField::GetLong(1080)", "IkvField::GetLong(1081)", "IkvField::GetLong(1082)",
                          "IkvField::GetLong(1083)", "IkvField::GetLong(1084)", "IkvField::GetLong(1085)",
                          "IkvField::GetLong(1160)"));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorFill, NameIsShownAndLimitedTo63Characters) {
  edit([](Editor& editor) {
    EXPECT_EQ(L"IF", editor.text(IDC_NAME));
    EXPECT_EQ(63, SendDlgItemMessageW(editor.window(), IDC_NAME, EM_GETLIMITTEXT, 0, 0));
    editor.enter(IDC_NAME, std::wstring(64, L'x'));
    EXPECT_EQ(std::wstring(63, L'x'), editor.text(IDC_NAME));
  });
}

TEST_F(EditorFill, NameThatIsNullIsEmpty) {
  host.calls().fail("IkvField::GetText(1077)", {S_OK, Fault::Out::null});
  edit([](Editor& editor) { EXPECT_EQ(L"", editor.text(IDC_NAME)); });
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorFill, NameIsShownUnitByUnitWhateverItHolds) {
  const std::wstring names[] = {L"\"quoted\" 'twice'",
                                L"100% %s %n %1",
                                std::wstring(63, L'W'),
                                L"\xD83D\xDE00\xD83D\xDE01",
                                L"\x0001\x0002\x001F\x007F",
                                L"a\tb\vc\fd",
                                L" ",
                                L"&Menu && more"};
  for (const std::wstring& name : names) {
    rule().name = name;
    edit([&](Editor& editor) { EXPECT_EQ(name, editor.text(IDC_NAME)); });
  }
}

TEST_F(EditorFill, DayTypesAreFoundByTheirDataInTheSortedList) {
  for (const long day_type : {0L, 1L}) {
    rule().day_type = day_type;
    edit([&](Editor& editor) {
      HWND combo = editor.item(IDC_DAY_TYPE);
      EXPECT_THAT(test_support::combo_texts(combo), testing::UnorderedElementsAre(L"交易日", L"日历日"));
      EXPECT_EQ(day_type == 0 ? L"交易日" : L"日历日", editor.text(IDC_DAY_TYPE));
      const auto selected = static_cast<WPARAM>(editor.selection(IDC_DAY_TYPE));
      EXPECT_EQ(day_type, SendMessageW(combo, CB_GETITEMDATA, selected, 0));
    });
  }
}

TEST_F(EditorFill, OffsetIsShownByTheEditAndTheSpin) {
  for (const long offset : {0L, 7L, 42L, 99L}) {
    rule().roll_offset = offset;
    edit([&](Editor& editor) {
      EXPECT_EQ(std::to_wstring(offset), editor.text(IDC_OFFSET));
      EXPECT_EQ(offset, editor.spin());
    });
  }
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorFill, OffsetTakesTwoCharactersAndTheSpinGoesFrom0To99) {
  edit([](Editor& editor) {
    EXPECT_EQ(2, SendDlgItemMessageW(editor.window(), IDC_OFFSET, EM_GETLIMITTEXT, 0, 0));
    int lower = -1;
    int upper = -1;
    SendDlgItemMessageW(editor.window(), IDC_OFFSET_SPIN, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&lower),
                        reinterpret_cast<LPARAM>(&upper));
    EXPECT_EQ(0, lower);
    EXPECT_EQ(99, upper);
    EXPECT_EQ(editor.item(IDC_OFFSET), editor.spins_edit());
  });
}

TEST_F(EditorFill, SpinOfAnotherEditBecomesTheOffsets) {
  rule().roll_offset = 42;
  bool stolen = false;
  const test_support::SentMessages watch([&](const CWPSTRUCT& message) {
    if (message.message != WM_INITDIALOG || !GetDlgItem(message.hwnd, IDC_OFFSET_SPIN)) return;
    HWND name = GetDlgItem(message.hwnd, IDC_NAME);
    SendDlgItemMessageW(message.hwnd, IDC_OFFSET_SPIN, UDM_SETBUDDY, reinterpret_cast<WPARAM>(name), 0);
    stolen = test_support::RuleEditor(message.hwnd).spins_edit() == name;
  });
  edit([](Editor& editor) {
    EXPECT_EQ(editor.item(IDC_OFFSET), editor.spins_edit());
    EXPECT_EQ(L"42", editor.text(IDC_OFFSET));
    EXPECT_EQ(L"IF", editor.text(IDC_NAME));
  });
  EXPECT_TRUE(stolen) << "the spin had another edit before the dialog was filled";
}

TEST_F(EditorFill, OffsetOutsideTheRangeIsShownAsStoredAndAsserted) {
  for (const long offset : {-1L, 100L, 70000L, LONG_MAX, LONG_MIN}) {
    rule().roll_offset = offset;
    edit([&](Editor& editor) { EXPECT_EQ(std::to_wstring(offset), editor.text(IDC_OFFSET)); });
    EXPECT_THAT(reports(), ElementsAre(offset_is_not_the_spins));
  }
}

TEST_F(EditorFill, DayModeChecksItsRadioAndEnablesItsGroup) {
  const struct {
    long mode;
    bool by_day_of_month;
    bool by_weekday;
  } rows[] = {{0, true, false}, {1, false, true}, {2, false, false}, {-1, false, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.mode);
    rule().day_mode = row.mode;
    edit([&](Editor& editor) {
      EXPECT_EQ(row.by_day_of_month, editor.checked(IDC_DAY_OF_MONTH_MODE));
      EXPECT_EQ(row.by_weekday, editor.checked(IDC_WEEKDAY_MODE));
      for (const int id : day_of_month_group) EXPECT_EQ(row.by_day_of_month, editor.enabled(id)) << id;
      for (const int id : weekday_group) EXPECT_EQ(!row.by_day_of_month, editor.enabled(id)) << id;
    });
  }
}

TEST_F(EditorFill, CombosOfferTheirChoicesInOrder) {
  edit([](Editor& editor) {
    const auto texts = [&](int combo) { return test_support::combo_texts(editor.item(combo)); };
    const auto data = [&](int combo) { return test_support::combo_data(editor.item(combo)); };
    const auto days = texts(IDC_DAY_OF_MONTH);
    const auto day_data = data(IDC_DAY_OF_MONTH);
    ASSERT_EQ(31u, days.size());
    for (std::size_t index = 0; index < 31; ++index) {
      EXPECT_EQ(L"第" + std::to_wstring(index + 1), days[index]);
      EXPECT_EQ(static_cast<LRESULT>(index + 1), day_data[index]);
    }
    for (const int combo : {IDC_DAY_MONTH, IDC_WEEKDAY_MONTH}) {
      EXPECT_THAT(texts(combo), ElementsAre(L"上月", L"当月", L"下月"));
      EXPECT_THAT(data(combo), ElementsAre(0, 1, 2));
    }
    EXPECT_THAT(texts(IDC_WEEK_ORDINAL), ElementsAre(L"第1", L"第2", L"第3", L"第4", L"最新价"));
    EXPECT_THAT(data(IDC_WEEK_ORDINAL), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(texts(IDC_WEEKDAY),
                ElementsAre(L"星期日", L"星期一", L"星期二", L"星期三", L"星期四", L"星期五", L"星期六"));
    EXPECT_THAT(data(IDC_WEEKDAY), ElementsAre(0, 1, 2, 3, 4, 5, 6));
  });
}

TEST_F(EditorFill, CombosShowTheStoredChoices) {
  rule() = {stored_id, L"IF", 0, 1, 0, 31, 2, 5, 6, 0, 0};
  edit([](Editor& editor) {
    EXPECT_EQ(L"日历日", editor.text(IDC_DAY_TYPE));
    EXPECT_EQ(L"第31", editor.text(IDC_DAY_OF_MONTH));
    EXPECT_EQ(L"下月", editor.text(IDC_DAY_MONTH));
    EXPECT_EQ(L"最新价", editor.text(IDC_WEEK_ORDINAL));
    EXPECT_EQ(L"星期六", editor.text(IDC_WEEKDAY));
    EXPECT_EQ(L"上月", editor.text(IDC_WEEKDAY_MONTH));
  });
}

TEST_F(EditorFill, CombosShowNothingForAValueThatIsNoChoice) {
  for (const long odd : {-1L, 32L, 99L, LONG_MAX, LONG_MIN}) {
    rule() = {stored_id, L"IF", 0, odd, 0, odd, odd, odd, odd, odd, 0};
    edit([](Editor& editor) {
      for (const int combo : combos) EXPECT_EQ(CB_ERR, editor.selection(combo)) << combo;
    });
  }
  rule().day_of_month = 0;
  edit([](Editor& editor) { EXPECT_EQ(CB_ERR, editor.selection(IDC_DAY_OF_MONTH)); });
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorFill, CheckBoxIsSetByOneAlone) {
  for (const long flag : {0L, 1L, 2L, -1L}) {
    rule().move_to_next_trading_day = flag;
    edit([&](Editor& editor) { EXPECT_EQ(flag == 1, editor.checked(IDC_MOVE_TO_NEXT_TRADING_DAY)); });
  }
}

TEST_F(EditorFill, DescriptionIsBoldInTheDialogsFontAndTheFontEndsWithTheDialog) {
  HFONT bold = nullptr;
  edit([&](Editor& editor) {
    bold = reinterpret_cast<HFONT>(SendDlgItemMessageW(editor.window(), IDC_DESCRIPTION, WM_GETFONT, 0, 0));
    LOGFONTW described = {};
    LOGFONTW plain = {};
    ASSERT_NE(0, GetObjectW(bold, sizeof described, &described));
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(editor.window(), WM_GETFONT, 0, 0)), sizeof plain, &plain);
    EXPECT_EQ(700, described.lfWeight);
    EXPECT_NE(700, plain.lfWeight);
    EXPECT_EQ(plain.lfHeight, described.lfHeight);
    EXPECT_STREQ(plain.lfFaceName, described.lfFaceName);
  });
  EXPECT_EQ(0u, GetObjectType(bold)) << "the font is released";
}

TEST_F(EditorFill, ReadsAsZeroOrEmptyWhenNoRuleHasTheNumber) {
  edit(6, [](Editor& editor) {
    EXPECT_EQ(L"", editor.text(IDC_NAME));
    EXPECT_EQ(L"0", editor.text(IDC_OFFSET));
    EXPECT_TRUE(editor.checked(IDC_DAY_OF_MONTH_MODE));
    EXPECT_EQ(CB_ERR, editor.selection(IDC_DAY_OF_MONTH));
    EXPECT_FALSE(editor.checked(IDC_MOVE_TO_NEXT_TRADING_DAY));
  });
  EXPECT_EQ(10u, reports().size()) << "a report for each field";
}

TEST_F(EditorFill, InitDialogReturnsZero) {
  LRESULT result = -1;
  const test_support::HandledMessages watch([&](const CWPRETSTRUCT& message) {
    if (message.message == WM_INITDIALOG) result = message.lResult;
  });
  edit([](Editor&) {});
  EXPECT_EQ(0, result);
}

TEST_F(EditorFill, DayMode2LeavesTheRadioButtonsInReachOfTabWhichChoosesNone) {
  rule().day_mode = 2;
  std::vector<int> without_click;
  const test_support::SentMessages watch([&](const CWPSTRUCT& message) {
    if (message.message == BM_SETDONTCLICK && message.wParam) without_click.push_back(GetDlgCtrlID(message.hwnd));
  });
  edit([](Editor& editor) {
    SetFocus(editor.item(IDC_DAY_TYPE));
    test_support::press(VK_TAB);
    EXPECT_EQ(editor.item(IDC_DAY_OF_MONTH_MODE), GetFocus());
    EXPECT_FALSE(editor.checked(IDC_DAY_OF_MONTH_MODE));
    EXPECT_FALSE(editor.checked(IDC_WEEKDAY_MODE));
    test_support::press(VK_SPACE);
    EXPECT_TRUE(editor.checked(IDC_DAY_OF_MONTH_MODE));
    editor.cancel();
  });
  EXPECT_THAT(without_click, testing::ElementsAre(IDC_DAY_OF_MONTH_MODE, IDC_WEEKDAY_MODE));
}

}  // namespace
}  // namespace editor_test
