#include <gmock/gmock.h>

#include <new>
#include <utility>

#include "FailingNew.h"
#include "FaultLoop.h"
#include "ListView.h"
#include "RuleRows.h"

namespace zd_expiration_rule_plugin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Row = std::pair<std::wstring, long>;
using Rows = std::vector<Row>;

Rows visited(const RuleRows& rows) {
  Rows visited;
  rows.for_each([&](const wchar_t* name, long rule_id) { visited.emplace_back(name, rule_id); });
  return visited;
}

RuleRows rows_of(const std::vector<std::wstring>& names) {
  RuleRows rows;
  for (const std::wstring& name : names) rows.add(name.c_str(), static_cast<long>(rows.size()));
  return rows;
}

/// The numbers of the rows from the last one to the first.
std::vector<long> backwards(const RuleRows& rows) {
  std::vector<long> numbers;
  rows.for_each([&](const wchar_t*, long rule_id) { numbers.insert(numbers.begin(), rule_id); });
  return numbers;
}

/// The numbers of these names in the order that a sorted list view gives them.
std::vector<long> order_in_a_list_view(const std::vector<std::wstring>& names) {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  ui_helper::CListView list(CreateWindowExW(0, WC_LISTVIEWW, L"", WS_POPUP | LVS_REPORT | LVS_SORTASCENDING, 0, 0, 200,
                                            200, nullptr, nullptr, nullptr, nullptr));
  for (std::size_t number = 0; number < names.size(); ++number) {
    list.InsertItem(names[number].c_str(), static_cast<LPARAM>(number));
  }
  std::vector<long> numbers;
  numbers.reserve(names.size());
  for (int index = 0; index < list.GetItemCount(); ++index) {
    numbers.push_back(static_cast<long>(list.GetItemData(index)));
  }
  DestroyWindow(list.m_hWnd);
  return numbers;
}

struct NamesCase {
  const char* name;
  std::vector<std::wstring> names;
};

class RuleRowsOrder : public testing::TestWithParam<NamesCase> {};

TEST_P(RuleRowsOrder, IsThatOfASortedListViewBackwards) {
  RuleRows rows = rows_of(GetParam().names);
  rows.sort_backwards();
  EXPECT_EQ(GetParam().names.size(), rows.size());
  EXPECT_EQ(order_in_a_list_view(GetParam().names), backwards(rows));
}

INSTANTIATE_TEST_SUITE_P(
    All, RuleRowsOrder,
    testing::Values(NamesCase{"One", {L"IF"}},
                    NamesCase{"MixedCase", {L"cu", L"Al", L"AU", L"ag", L"b", L"B1", L"Cu2"}},
                    NamesCase{"Chinese", {L"沪深300", L"铜", L"上证50", L"国债", L"IF", L"白银", L"原油", L"上证180"}},
                    NamesCase{"DigitsAndSigns", {L"10", L"9", L"1 0", L"a*", L"*a", L"a", L"a b", L"ab", L""}},
                    NamesCase{"Accents", {L"Äb", L"ac", L"Aa", L"éa", L"eb", L"ez"}},
                    NamesCase{"Longest", {std::wstring(63, L'字'), std::wstring(62, L'字'), std::wstring(63, L'z')}}),
    [](const auto& test) { return test.param.name; });

TEST(RuleRows, WithEqualNamesKeepTheirOrder) {
  RuleRows rows;
  for (const Row& row : Rows{{L"same", 1}, {L"a", 2}, {L"SAME", 3}, {L"z", 4}, {L"same", 5}}) {
    rows.add(row.first.c_str(), row.second);
  }
  rows.sort_backwards();
  EXPECT_THAT(visited(rows),
              ElementsAre(Row(L"z", 4), Row(L"same", 1), Row(L"SAME", 3), Row(L"same", 5), Row(L"a", 2)));
}

TEST(RuleRows, AreVisitedAsTheyCameBeforeTheyAreSorted) {
  EXPECT_THAT(visited(rows_of({L"b", L"c", L"a"})), ElementsAre(Row(L"b", 0), Row(L"c", 1), Row(L"a", 2)));
}

TEST(RuleRows, WithoutANameComeLast) {
  RuleRows rows;
  rows.add(_bstr_t(), 1);
  rows.add(L"", 2);
  rows.add(L"a", 3);
  rows.sort_backwards();
  EXPECT_THAT(visited(rows), ElementsAre(Row(L"a", 3), Row(L"", 1), Row(L"", 2)));
}

TEST(RuleRows, ShowANameUpToItsFirstNull) {
  RuleRows rows;
  const _bstr_t name(SysAllocStringLen(L"b\0a", 3), false);
  rows.add(name, 1);
  rows.add(L"ab", 2);
  rows.add(L"c", 3);
  rows.sort_backwards();
  EXPECT_THAT(visited(rows), ElementsAre(Row(L"c", 3), Row(L"b", 1), Row(L"ab", 2)));
}

TEST(RuleRows, TooLongForAKeyAreVisitedWhole) {
  const std::wstring name(2000, L'字');
  RuleRows rows = rows_of({L"b", name, L"a", name + L"x"});
  rows.sort_backwards();
  EXPECT_THAT(visited(rows),
              testing::UnorderedElementsAre(Row(L"b", 0), Row(name, 1), Row(L"a", 2), Row(name + L"x", 3)));
}

TEST(RuleRows, NoneAreNotVisited) {
  RuleRows rows;
  rows.sort_backwards();
  EXPECT_EQ(0U, rows.size());
  EXPECT_THAT(visited(rows), IsEmpty());
}

TEST(RuleRows, AreAsBeforeWhenOneCannotBeAddedWithoutMemory) {
  const std::wstring name(200, L'z');
  const _bstr_t added(name.c_str());
  const Rows before = {{L"a", 0}, {L"b", 1}};
  const std::size_t failures = test_support::fail_each_allocation([&](std::size_t number) {
    RuleRows rows = rows_of({L"a", L"b"});
    bool failed = false;
    try {
      const test_support::FailingNew memory(number);
      rows.add(added, 7);
      failed = memory.has_failed();
    } catch (const std::bad_alloc&) {
      failed = true;
      EXPECT_EQ(before, visited(rows));
      EXPECT_EQ(before.size(), rows.size());
      rows.add(added, 7);
    }
    rows.sort_backwards();
    EXPECT_THAT(visited(rows), ElementsAre(Row(name, 7), Row(L"b", 1), Row(L"a", 0)));
    return failed;
  });
  EXPECT_GT(failures, 0u);
}

TEST(RuleRows, AreSortedWithoutMemory) {
  RuleRows rows = rows_of({L"b", L"c", L"a"});
  {
    const test_support::FailingNew memory(1);
    rows.sort_backwards();
    EXPECT_TRUE(memory.has_failed());
  }
  EXPECT_THAT(visited(rows), ElementsAre(Row(L"c", 1), Row(L"b", 0), Row(L"a", 2)));
}

}  // namespace
}  // namespace zd_expiration_rule_plugin
