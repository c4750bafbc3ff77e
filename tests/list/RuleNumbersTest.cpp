#include <climits>
#include <ostream>

#include "ListDialogTest.h"
#include "resource.h"
#include "string_t.h"

namespace list_test {
namespace {

constexpr LPARAM beyond_32_bits = 0x1'00000000;

/// What a row of the list lets its user do, by the number of its rule. docs/dialogs.md shows the same table.
struct NumberCase {
  const char* name;
  LPARAM number;    ///< as the row keeps it, of which 32 bits count
  bool can_change;  ///< whether the buttons Edit and Delete are enabled
  long edited;      ///< the rule that a double click edits, 0 for a new one
  bool can_delete;  ///< whether the Delete key asks
};

void PrintTo(const NumberCase& test, std::ostream* out) { *out << test.name; }

constexpr NumberCase cases[] = {
    {"One", 1, true, 1, true},
    {"Largest", LONG_MAX, true, LONG_MAX, true},
    {"Zero", 0, false, 0, false},
    {"MinusOne", -1, false, -1, true},
    {"Smallest", LONG_MIN, false, LONG_MIN, true},
    {"ZeroBelow32Bits", beyond_32_bits, false, 0, false},
    {"OneBelow32Bits", beyond_32_bits + 1, true, 1, true},
    {"NegativeIn32Bits", 0xFFFFFFFF, false, -1, true},
};

class ListRuleNumber : public ListDialogTest, public testing::WithParamInterface<NumberCase> {
 protected:
  ListRuleNumber() { host.rules() = {{static_cast<long>(GetParam().number), L"IF"}}; }

  /// Opens the list with the row selected; forgets what that asked of the host.
  void open_at_row(const std::function<void(RuleList&)>& act) {
    open([&](RuleList& list) {
      list.set_data(0, GetParam().number);
      list.select(-1);
      list.select(0);
      host.calls().forget();
      act(list);
    });
  }
};

TEST_P(ListRuleNumber, EnablesEditAndDeleteAboveZero) {
  open_at_row([](RuleList& list) {
    EXPECT_EQ(GetParam().can_change, list.can_change());
    if (!list.can_change()) return;
    EXPECT_EQ(L"IF", cancel_in_editor([&] { list.press(IDC_EDIT_RULE); }));
  });
}

TEST_P(ListRuleNumber, IsTheRuleThatADoubleClickEdits) {
  open_at_row([this](RuleList& list) {
    const bool is_new = GetParam().edited == 0;
    EXPECT_EQ(is_new ? resource_string::resourse_2_string_impl(IDS_NEW_RULE_NAME) : L"IF",
              cancel_in_editor([&] { list.double_click(0); }));
    const Texts numbers =
        is_new ? Texts() : Texts{"IkvRuleFilter::SetRuleID(" + std::to_string(GetParam().edited) + ")"};
    EXPECT_EQ(numbers, host.calls().all("IkvRuleFilter::SetRuleID"));
  });
}

TEST_P(ListRuleNumber, IsDeletedByTheKeyUnlessItIsZero) {
  open_at_row([this](RuleList& list) {
    if (GetParam().can_delete) {
      test_support::with_message_box([&] { list.key_down(VK_DELETE); }, IDYES);
    } else {
      list.key_down(VK_DELETE);
      EXPECT_THAT(calls(), testing::IsEmpty());
    }
  });
  EXPECT_EQ(GetParam().can_delete, host.rules().empty());
}

INSTANTIATE_TEST_SUITE_P(All, ListRuleNumber, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace list_test
