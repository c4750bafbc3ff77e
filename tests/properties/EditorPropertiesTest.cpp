#include <windows.h>
#include <commctrl.h>

#include <algorithm>

#include "Depth.h"
#include "HostileDialogs.h"
#include "resource.h"

namespace properties_test {
namespace {

using testing::IsEmpty;

constexpr char offset_is_not_the_spins[] = "ASSERT value == _spin.GetPos() | SpinControlHelper.cpp:* AdjustEditControl";

void expect_shown(HWND window, const HostRule& rule) {
  const RuleEditor editor(window);
  const HostRule saved = saved_unchanged(rule);
  EXPECT_EQ(rule.name, editor.text(IDC_NAME));
  EXPECT_EQ(std::to_wstring(rule.roll_offset), editor.text(IDC_OFFSET));
  EXPECT_EQ(saved.day_type, editor.chosen(IDC_DAY_TYPE));
  EXPECT_EQ(rule.day_mode == 0, editor.checked(IDC_DAY_OF_MONTH_MODE));
  EXPECT_EQ(rule.day_mode == 1, editor.checked(IDC_WEEKDAY_MODE));
  EXPECT_EQ(saved.day_of_month, editor.chosen(IDC_DAY_OF_MONTH));
  EXPECT_EQ(saved.day_month, editor.chosen(IDC_DAY_MONTH));
  EXPECT_EQ(saved.week_ordinal, editor.chosen(IDC_WEEK_ORDINAL));
  EXPECT_EQ(saved.weekday, editor.chosen(IDC_WEEKDAY));
  EXPECT_EQ(saved.weekday_month, editor.chosen(IDC_WEEKDAY_MONTH));
  EXPECT_EQ(rule.move_to_next_trading_day == 1, editor.checked(IDC_MOVE_TO_NEXT_TRADING_DAY));
}

class HostileNumbers : public HostileDialogs {
 protected:
  /// Any number, or one that the editor offers.
  long number(long first, long last) {
    return random.below(2) ? random.number()
                           : first + static_cast<long>(random.below(static_cast<unsigned>(last - first + 1)));
  }

  HostRule any_rule(long id) {
    return {id,           allowed_name(), number(0, 99), number(0, 1), number(0, 1), number(1, 31),
            number(0, 2), number(1, 5),   number(0, 6),  number(0, 2), number(0, 1)};
  }
};

TEST_F(HostileNumbers, AreShownAsStoredAndSavedAsTheControlsHoldThem) {
  for (int round = 0; round < test_support::repetitions(150, 15); ++round) {
    SCOPED_TRACE(random.trace(round));
    const HostRule rule = any_rule(random.below(2) ? LONG_MAX : 1);
    const HostRule other = any_rule(2);
    if (rule.name == other.name) continue;
    host.rules() = {rule, other};
    host.calls().fail("IkvExpirationRuleService::update_rule", {S_OK});
    ASSERT_EQ(IDOK, edit(rule.id, [&](HWND editor) {
                expect_shown(editor, rule);
                send_click(editor, IDOK);
              }));
    const HostRule saved = saved_unchanged(rule);
    ASSERT_EQ(saved, host.saves().back());
    using Texts = std::vector<std::string>;
    ASSERT_EQ(saved.roll_offset == rule.roll_offset ? Texts() : Texts{offset_is_not_the_spins},
              test_support::take_reports_without_lines());
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(HostileNumbers, AreLeftAloneByCancel) {
  for (int round = 0; round < test_support::repetitions(30, 6); ++round) {
    SCOPED_TRACE(random.trace(round));
    host.rules() = {any_rule(LONG_MIN), any_rule(-1), any_rule(LONG_MAX)};
    const auto before = host.rules();
    const HostRule& rule = before[random.below(3)];
    ASSERT_EQ(IDCANCEL, edit(rule.id, [&](HWND editor) { expect_shown(editor, rule); }));
    ASSERT_EQ(before, host.rules());
  }
  reports();
}

TEST_F(HostileNumbers, NameTheRulesOfTheListOfWhichOnlyThoseAboveZeroCanBeChanged) {
  for (int round = 0; round < test_support::repetitions(5, 1); ++round) {
    SCOPED_TRACE(random.trace(round));
    host.rules().clear();
    for (int count = 0; count < 20; ++count) host.rules().push_back(any_rule(random.number()));
    list([&](HWND window) {
      const RuleList shown(window);
      const auto rows = shown.rows();
      ASSERT_EQ(host.rules().size(), rows.size());
      for (std::size_t index = 0; index < rows.size(); ++index) {
        EXPECT_TRUE(std::any_of(host.rules().begin(), host.rules().end(), [&](const HostRule& rule) {
          return rule.id == rows[index].rule_id && rule.name == rows[index].name;
        }));
        shown.select(static_cast<int>(index));
        for (const int button : {IDC_EDIT_RULE, IDC_DELETE_RULE}) {
          EXPECT_EQ(rows[index].rule_id > 0, shown.enabled(button)) << rows[index].rule_id;
        }
      }
    });
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_THAT(reports(), IsEmpty());
}

}  // namespace
}  // namespace properties_test
