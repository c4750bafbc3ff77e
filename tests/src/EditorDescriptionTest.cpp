#include "EditorTest.h"

namespace editor_test {
namespace {

const std::wstring weekday_piece = L" 第1 星期一 ， 当月";

using EditorDescription = EditorTest;

TEST_F(EditorDescription, IsThereWhenTheEditorOpens) {
  rule().roll_offset = 5;
  edit([](Editor& editor) {
    EXPECT_EQ(L"合约换月于指定日前 5 交易日  指定日为 第1 天， 当月 或者 前一个 交易日", editor.description());
  });
}

TEST_F(EditorDescription, OfAWeekdayRuleReadsTheWeekday) {
  rule() = {stored_id, L"IF", 3, 1, 1, 1, 1, 3, 5, 2, 1};
  edit([](Editor& editor) {
    EXPECT_EQ(sentence(L"3", L"日历日", L" 第3 星期五 ， 下月", L"下一个"), editor.description());
  });
}

TEST_F(EditorDescription, OfNoModeReadsTheWeekday) {
  rule().day_mode = 2;
  edit([](Editor& editor) { EXPECT_EQ(sentence(L"0", L"交易日", weekday_piece, L"前一个"), editor.description()); });
}

TEST_F(EditorDescription, SwitchingTheRadioChangesTheDayPieceAlone) {
  edit([](Editor& editor) {
    editor.press(IDC_WEEKDAY_MODE);
    EXPECT_EQ(sentence(L"0", L"交易日", weekday_piece, L"前一个"), editor.description());
    editor.press(IDC_DAY_OF_MONTH_MODE);
    EXPECT_EQ(sentence(L"0", L"交易日", day_piece, L"前一个"), editor.description());
  });
}

TEST_F(EditorDescription, SwitchingTheRadioEnablesItsGroupAndKeepsAllValues) {
  edit([](Editor& editor) {
    editor.press(IDC_WEEKDAY_MODE);
    for (const int id : day_of_month_group) EXPECT_FALSE(editor.enabled(id)) << id;
    for (const int id : weekday_group) EXPECT_TRUE(editor.enabled(id)) << id;
    EXPECT_FALSE(editor.checked(IDC_DAY_OF_MONTH_MODE));
    EXPECT_EQ(L"第1", editor.text(IDC_DAY_OF_MONTH));
    editor.press(IDC_DAY_OF_MONTH_MODE);
    for (const int id : day_of_month_group) EXPECT_TRUE(editor.enabled(id)) << id;
    for (const int id : weekday_group) EXPECT_FALSE(editor.enabled(id)) << id;
    EXPECT_EQ(L"星期一", editor.text(IDC_WEEKDAY));
  });
}

TEST_F(EditorDescription, TickingTheCheckBoxChangesTheDirectionAlone) {
  edit([](Editor& editor) {
    editor.press(IDC_MOVE_TO_NEXT_TRADING_DAY);
    EXPECT_EQ(sentence(L"0", L"交易日", day_piece, L"下一个"), editor.description());
    editor.press(IDC_MOVE_TO_NEXT_TRADING_DAY);
    EXPECT_EQ(sentence(L"0", L"交易日", day_piece, L"前一个"), editor.description());
  });
}

TEST_F(EditorDescription, FollowsEachComboOfTheDayOfMonth) {
  edit([](Editor& editor) {
    const int calendar_days = editor.text(IDC_DAY_TYPE) == test_support::combo_texts(editor.item(IDC_DAY_TYPE))[0];
    editor.choose(IDC_DAY_TYPE, calendar_days);
    EXPECT_EQ(sentence(L"0", L"日历日", day_piece, L"前一个"), editor.description());
    editor.choose(IDC_DAY_OF_MONTH, 14);
    EXPECT_EQ(sentence(L"0", L"日历日", L" 第15 天， 当月", L"前一个"), editor.description());
    editor.choose(IDC_DAY_MONTH, 2);
    EXPECT_EQ(sentence(L"0", L"日历日", L" 第15 天， 下月", L"前一个"), editor.description());
  });
}

TEST_F(EditorDescription, FollowsEachComboOfTheWeekday) {
  rule().day_mode = 1;
  edit([](Editor& editor) {
    editor.choose(IDC_WEEK_ORDINAL, 4);
    EXPECT_EQ(sentence(L"0", L"交易日", L" 最新价 星期一 ， 当月", L"前一个"), editor.description());
    editor.choose(IDC_WEEKDAY, 0);
    EXPECT_EQ(sentence(L"0", L"交易日", L" 最新价 星期日 ， 当月", L"前一个"), editor.description());
    editor.choose(IDC_WEEKDAY_MONTH, 0);
    EXPECT_EQ(sentence(L"0", L"交易日", L" 最新价 星期日 ， 上月", L"前一个"), editor.description());
  });
}

TEST_F(EditorDescription, OfNothingChosenKeepsItsSpaces) {
  rule() = {stored_id, L"IF", 0, -1, 0, -1, -1, 1, 1, 1, 0};
  edit([](Editor& editor) { EXPECT_EQ(sentence(L"0", L"", L"  天， ", L"前一个"), editor.description()); });
  rule() = {stored_id, L"IF", 0, 0, 1, 1, 1, -1, -1, -1, 0};
  edit([](Editor& editor) { EXPECT_EQ(sentence(L"0", L"交易日", L"   ， ", L"前一个"), editor.description()); });
}

TEST_F(EditorDescription, LowerCasesTheTypeTheLabelAndTheMonthOnly) {
  edit([](Editor& editor) {
    const int labels[] = {IDC_OFFSET_LABEL, IDC_OFFSET_SUFFIX, IDC_DAY_LABEL, IDC_DAY_SUFFIX};
    for (const int label : labels) SetWindowTextW(editor.item(label), (L"L" + std::to_wstring(label)).c_str());
    editor.press(IDC_MOVE_TO_NEXT_TRADING_DAY);
    EXPECT_EQ(L"L209 0 交易日 L213 l214 第1 L219 当月 或者 下一个 交易日", editor.description());
  });
}

}  // namespace
}  // namespace editor_test
