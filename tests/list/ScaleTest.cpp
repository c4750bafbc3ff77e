#include "Depth.h"
#include "ListDialogTest.h"

namespace list_test {
namespace {

class ListScale : public ListDialogTest {};

TEST_F(ListScale, UsersAreFoundAmongManySettings) {
  const auto count = static_cast<std::size_t>(test_support::repetitions(100'000, 10'000));
  constexpr std::size_t name_calls = 8;
  constexpr std::size_t calls_around_the_rows = 5;
  constexpr std::size_t calls_per_row = 4;
  constexpr std::size_t more_calls_per_user = 2;
  host.rules() = {{5, L"IF"}};
  host.settings().assign(count, {L"other", L"TF"});
  host.settings().front() = {L"first", L"IF"};
  host.settings()[count / 2] = {L"middle", L"IF"};
  host.settings().back() = {L"last", L"IF"};
  Names users;
  EXPECT_TRUE(dialog.is_expiration_rule_uses(5, users));
  EXPECT_EQ(Names({L"first", L"middle", L"last"}), users);
  EXPECT_EQ(name_calls + calls_around_the_rows + calls_per_row * count + more_calls_per_user * users.size(),
            calls().size());
}

/// Different names in an order that is not theirs.
std::wstring shuffled_name(int index, int count) {
  constexpr int step = 7919;  // a prime, so that every number comes once
  wchar_t name[16] = {};
  _snwprintf(name, ARRAYSIZE(name) - 1, L"rule %05d", static_cast<int>(1LL * index * step % count));
  return name;
}

TEST_F(ListScale, ManyRulesAreShownInOrder) {
  const int count = test_support::repetitions(20'000, 2'000);
  constexpr std::size_t calls_around_the_rows = 6;
  constexpr std::size_t calls_per_row = 6;
  for (int index = 0; index < count; ++index) host.rules().push_back({index + 1, shuffled_name(index, count)});
  open([&](RuleList& list) {
    EXPECT_EQ(calls_around_the_rows + calls_per_row * count, calls().size());
    ASSERT_EQ(count, list.count());
    const Names names = list.names();
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(L"rule 00000", names.front());
    EXPECT_EQ(count == 2'000 ? L"rule 01999" : L"rule 19999", names.back());
    for (int index = 0; index < count; index += 997) {
      EXPECT_EQ(shuffled_name(static_cast<int>(list.data(index)) - 1, count), list.name(index));
    }
    EXPECT_EQ(0, list.selected());
  });
  EXPECT_THAT(reports(), testing::IsEmpty());
}

TEST_F(ListScale, LastOfManyRulesIsReselectedAfterAnEdit) {
  const int count = test_support::repetitions(20'000, 2'000);
  for (int index = 0; index < count; ++index) host.rules().push_back({index + 1, shuffled_name(index, count)});
  open([&](RuleList& list) {
    const LPARAM edited = list.data(100);
    list.select(100);
    save_in_editor([&] { list.press(IDC_EDIT_RULE); }, L"sorts last");
    EXPECT_EQ(count - 1, list.selected());
    EXPECT_EQ(edited, list.data(count - 1));
  });
}

}  // namespace
}  // namespace list_test
