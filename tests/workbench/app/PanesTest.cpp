#include <gtest/gtest.h>

#include "ListReader.h"
#include "OwnedWindow.h"
#include "RulesPane.h"
#include "SettingsPane.h"

namespace workbench {
namespace {

struct ParentWindow {
  ParentWindow() {
    const INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    SetWindowSubclass(window.get(), &pass_notifications, 0, reinterpret_cast<DWORD_PTR>(this));
  }

  static LRESULT CALLBACK pass_notifications(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                             DWORD_PTR data) {
    ListPane* pane = reinterpret_cast<ParentWindow*>(data)->pane;
    if (message == WM_NOTIFY && pane) return pane->notify(*reinterpret_cast<NMHDR*>(lparam));
    return DefSubclassProc(window, message, wparam, lparam);
  }

  test_support::OwnedWindow window{
      CreateWindowExW(0, WC_STATICW, L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr)};
  ListPane* pane = nullptr;
};

StoredRule rule(long number, const wchar_t* name) { return {number, 1, {.name = name}}; }

class RulesPaneTest : public testing::Test {
 protected:
  RulesPaneTest() { parent_.pane = &pane_; }

  void focus_row(int row) {
    ListView_SetItemState(pane_.list(), row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  }

  ParentWindow parent_;
  RulesPane pane_{parent_.window.get()};
};

TEST_F(RulesPaneTest, ShowsARuleInItsColumns) {
  pane_.show({{7, 1, {.name = L"SHFE copper", .roll_offset = 2, .day_of_month = 15, .move_to_next_trading_day = 1}}});
  EXPECT_EQ(cell_text(pane_.list(), 0, 0), L"7");
  EXPECT_EQ(cell_text(pane_.list(), 0, 1), L"SHFE copper");
  EXPECT_EQ(cell_text(pane_.list(), 0, 2), L"提前 2 个交易日");
  EXPECT_EQ(cell_text(pane_.list(), 0, 3), L"当月第 15 天");
  EXPECT_EQ(cell_text(pane_.list(), 0, 4), L"下一个交易日");
}

TEST_F(RulesPaneTest, LongestNameIsShownWhole) {
  const std::wstring name(longest_name, L'规');
  pane_.show({rule(1, name.c_str())});
  EXPECT_EQ(cell_text(pane_.list(), 0, 1), name);
}

TEST_F(RulesPaneTest, RowsHaveTheNumbersOfTheirRules) {
  pane_.show({rule(3, L"a"), rule(8, L"b")});
  EXPECT_EQ(pane_.number_at(1), 8);
  EXPECT_EQ(pane_.number_at(2), 0);
  EXPECT_EQ(pane_.number_at(-1), 0);
}

TEST_F(RulesPaneTest, SelectionStaysOnItsRule) {
  pane_.show({rule(3, L"a"), rule(8, L"b")});
  focus_row(1);
  pane_.show({rule(1, L"new"), rule(3, L"a"), rule(8, L"b")});
  EXPECT_EQ(pane_.focused_row(), 2);
  EXPECT_EQ(ListView_GetNextItem(pane_.list(), -1, LVNI_SELECTED), 2);
}

TEST_F(RulesPaneTest, FirstRowIsSelectedAtFirst) {
  pane_.show({rule(3, L"a"), rule(8, L"b")});
  EXPECT_EQ(pane_.focused_row(), 0);
}

TEST_F(RulesPaneTest, SelectionOfADeletedRuleGoesToItsNeighbour) {
  pane_.show({rule(3, L"a"), rule(8, L"b"), rule(9, L"c")});
  focus_row(1);
  pane_.show({rule(3, L"a"), rule(9, L"c")});
  EXPECT_EQ(pane_.focused_row(), 1);
  pane_.show({rule(3, L"a")});
  EXPECT_EQ(pane_.focused_row(), 0);
}

TEST_F(RulesPaneTest, EmptyListHasNoRows) {
  pane_.show({rule(3, L"a")});
  pane_.show({});
  EXPECT_EQ(ListView_GetItemCount(pane_.list()), 0);
}

TEST_F(RulesPaneTest, TypingTheBeginningOfANameFindsItsRow) {
  pane_.show({rule(3, L"COMEX gold"), rule(8, L"SHFE copper")});
  LVFINDINFOW wanted{};
  wanted.flags = LVFI_STRING | LVFI_PARTIAL;
  wanted.psz = L"shf";
  EXPECT_EQ(ListView_FindItem(pane_.list(), -1, &wanted), 1);
  wanted.psz = L"nobody";
  EXPECT_EQ(ListView_FindItem(pane_.list(), -1, &wanted), -1);
}

class SettingsPaneTest : public testing::Test {
 protected:
  SettingsPaneTest() { parent_.pane = &pane_; }

  COLORREF text_color(DWORD_PTR row) {
    NMLVCUSTOMDRAW request{};
    request.nmcd.hdr.code = static_cast<UINT>(NM_CUSTOMDRAW);
    request.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    request.nmcd.dwItemSpec = row;
    pane_.notify(request.nmcd.hdr);
    return request.clrText;
  }

  ParentWindow parent_;
  SettingsPane pane_{parent_.window.get()};
};

TEST_F(SettingsPaneTest, ShowsEachSettingWithItsRule) {
  pane_.show({{1, 1, {L"IF.CFFEX", L"CSI 300"}}}, {rule(1, L"CSI 300")});
  EXPECT_EQ(cell_text(pane_.list(), 0, 0), L"IF.CFFEX");
  EXPECT_EQ(cell_text(pane_.list(), 0, 1), L"CSI 300");
  EXPECT_EQ(cell_text(pane_.list(), 0, 2), L"正常");
  EXPECT_EQ(text_color(0), 0u);
}

TEST_F(SettingsPaneTest, SettingWhoseRuleDoesNotExistStandsOut) {
  pane_.show({{1, 1, {L"IF.CFFEX", L"csi 300"}}}, {rule(1, L"CSI 300")});
  EXPECT_EQ(cell_text(pane_.list(), 0, 2), L"规则不存在");
  EXPECT_NE(text_color(0), 0u);
}

TEST_F(SettingsPaneTest, SettingWithoutRuleIsNoMistake) {
  pane_.show({{1, 1, {L"IF.CFFEX", L""}}}, {});
  EXPECT_EQ(cell_text(pane_.list(), 0, 2), L"未指定规则");
  EXPECT_EQ(text_color(0), 0u);
}

}  // namespace
}  // namespace workbench
