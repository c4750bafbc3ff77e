#include "ApplicationTest.h"
#include "FailingRuleStore.h"

namespace workbench {
namespace {

using test_support::click;

/// The user looks at the changes of the rule that is selected.
class ChangesDialogTest : public ApplicationTest {
 protected:
  /// The cells of the list, row by row.
  std::vector<std::vector<std::wstring>> shown_changes() {
    std::vector<std::vector<std::wstring>> rows;
    test_support::with_dialog([&] { press(IDM_CHANGES); },
                              [&](HWND dialog) {
                                HWND list = GetDlgItem(dialog, IDC_CHANGES_LIST);
                                for (int row = 0; row < ListView_GetItemCount(list); ++row) {
                                  std::vector<std::wstring> cells;
                                  for (int column = 0; column < 5; ++column)
                                    cells.push_back(cell_text(list, row, column));
                                  rows.push_back(std::move(cells));
                                }
                                click(dialog, IDCANCEL);
                              });
    return rows;
  }
};

TEST_F(ChangesDialogTest, ShowsTheNewestChangeFirstAndOnlyWhatDiffers) {
  const StoredRule stored = store_->load_rules().front();
  Rule changed = stored.rule;
  changed.name = L"CSI 500";
  changed.roll_offset = 2;
  store_->update_rule(stored.number, changed, stored.revision);
  start();
  const auto rows = shown_changes();
  ASSERT_EQ(rows.size(), 2u);
  const RuleChange newest = store_->load_changes(stored.number).back();
  EXPECT_EQ(rows[0][0], newest.time.substr(0, 10) + L" " + newest.time.substr(11, 8));
  EXPECT_EQ(rows[0][1], newest.user);
  EXPECT_EQ(rows[0][2], L"修改");
  EXPECT_EQ(rows[0][3], L"CSI 300；指定日当天");
  EXPECT_EQ(rows[0][4], L"CSI 500；提前 2 个交易日");
  EXPECT_EQ(rows[1][2], L"新增");
  EXPECT_EQ(rows[1][3], L"");
  EXPECT_EQ(rows[1][4], L"CSI 300；指定日当天；当月第 1 天；不顺延");
}

TEST_F(ChangesDialogTest, ChangeOfAFieldThatIsNotUsedShowsTheWholeRule) {
  const StoredRule stored = store_->load_rules().front();
  Rule changed = stored.rule;
  changed.week_ordinal = 3;
  store_->update_rule(stored.number, changed, stored.revision);
  start();
  const auto rows = shown_changes();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0][3], rows[1][4]);
  EXPECT_EQ(rows[0][4], rows[1][4]);
}

TEST_F(ChangesDialogTest, RuleThatIsDeletedMeanwhileIsReported) {
  start();
  store_->replace_settings({});
  store_->delete_rule(store_->load_rules().front().number, std::nullopt);
  const std::wstring said = test_support::with_message_box([&] { press(IDM_CHANGES); }).text;
  EXPECT_NE(said.find(L"不存在"), std::wstring::npos) << testing::PrintToString(said);
}

}  // namespace
}  // namespace workbench
