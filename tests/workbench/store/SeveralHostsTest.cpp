#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "MemoryRuleStore.h"
#include "RandomCases.h"
#include "RawDatabase.h"
#include "SqliteRuleStore.h"
#include "StoreOperations.h"
#include "StoreSamples.h"
#include "StoreWriter.h"
#include "TemporaryFolder.h"

using namespace workbench;

namespace {

class SeveralHosts : public testing::Test {
 protected:
  std::unique_ptr<RuleStore> open() {
    return open_sqlite_store(path_, {content_before_operations(), std::chrono::seconds(30)});
  }

  std::wstring arguments(const std::wstring& rest) const { return L'"' + path_.native() + L"\" " + rest; }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
};

/// Lets a host make changes from operation `first` on, kills it after some, and answers how many it acknowledged.
unsigned run_and_kill(const std::wstring& arguments, test_support::RandomCases& random) {
  StoreWriter host(arguments);
  unsigned acknowledged = 0;
  for (unsigned wanted = random.below(20); acknowledged < wanted && host.next_acknowledged();) ++acknowledged;
  Sleep(random.below(15));
  host.kill();
  EXPECT_EQ(host.exit_code(), StoreWriter::killed) << "it had ended by itself";
  while (host.next_acknowledged()) ++acknowledged;
  return acknowledged;
}

/// One of the ten runs, which kill 200 hosts together.
class KilledHosts : public SeveralHosts, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Run, KilledHosts, testing::Range(0, 10));

TEST_P(KilledHosts, LeaveExactlyWhatTheyAcknowledged) {
  test_support::RandomCases random;
  MemoryRuleStore model;
  model.replace_content(content_before_operations());
  unsigned operation = 0;
  for (int round = 0; round < 20; ++round) {
    SCOPED_TRACE(random.trace(round));
    for (unsigned left = run_and_kill(arguments(L"stream " + std::to_wstring(operation)), random); left > 0; --left)
      apply_operation(model, operation++);
    const Holdings now = holdings(*open());
    // The change under way may have been made without its acknowledgement coming out.
    if (now != holdings(model)) apply_operation(model, operation++);
    ASSERT_EQ(now, holdings(model));
    ASSERT_EQ(RawDatabase(path_).text("PRAGMA integrity_check"), "ok");
  }
  EXPECT_GT(operation, 20u);
}

TEST_F(SeveralHosts, ChangesOfTwoHostsAtOnceAreAllKept) {
  constexpr unsigned each = 40;
  open();
  StoreWriter left(arguments(L"add left " + std::to_wstring(each)));
  StoreWriter right(arguments(L"add right " + std::to_wstring(each)));
  EXPECT_EQ(left.exit_code(), 0u);
  EXPECT_EQ(right.exit_code(), 0u);
  std::set<std::wstring> names;
  for (const StoredRule& stored : open()->load_rules()) names.insert(stored.rule.name);
  for (unsigned i = 0; i < each; ++i) {
    EXPECT_TRUE(names.contains(L"left" + std::to_wstring(i)));
    EXPECT_TRUE(names.contains(L"right" + std::to_wstring(i)));
  }
}

TEST_F(SeveralHosts, NoAcknowledgedChangeOfOneRuleIsLost) {
  constexpr unsigned each = 150;
  open()->update_rule(1, {.name = L"0"});
  const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, L"zdExpirationRules.counting");
  StoreWriter left(arguments(L"count 1 " + std::to_wstring(each)));
  StoreWriter right(arguments(L"count 1 " + std::to_wstring(each)));
  for (StoreWriter* host : {&left, &right}) EXPECT_EQ(host->next_acknowledged(), 0u) << "it is not ready";
  std::set<unsigned> numbers;
  EXPECT_TRUE(SetEvent(start));
  CloseHandle(start);
  unsigned met = 0;
  for (StoreWriter* host : {&left, &right}) {
    for (unsigned i = 0; i < each; ++i) numbers.insert(host->next_acknowledged().value_or(0));
    met += host->next_acknowledged().value_or(0);
  }
  EXPECT_EQ(numbers.size(), 2 * each) << "a number was given twice";
  EXPECT_EQ(open()->try_load_rule(1)->rule.name, std::to_wstring(2 * each));
  EXPECT_GT(met, 0u) << "the hosts never met";
}

TEST_F(SeveralHosts, ChangeWaitsForTheOneUnderWay) {
  EXPECT_EQ(std::chrono::seconds(3), SqliteStoreOptions().patience);
  const auto store = open_sqlite_store(path_);
  StoreWriter other(arguments(L"hold 0"));
  ASSERT_TRUE(other.next_acknowledged());
  const std::jthread end([&] {
    Sleep(100);
    other.kill();
  });
  EXPECT_EQ(store->add_rule({.name = L"waited"}).rule.name, L"waited");
}

TEST_F(SeveralHosts, TwoHostsMakeOneNewFileTogether) {
  StoreWriter left(arguments(L"add left 1"));
  StoreWriter right(arguments(L"add right 1"));
  EXPECT_EQ(left.exit_code(), 0u);
  EXPECT_EQ(right.exit_code(), 0u);
  EXPECT_EQ(open()->load_rules().size(), content_before_operations().rules.size() + 2);
  EXPECT_EQ(open()->load_settings(), content_before_operations().settings);
}

}  // namespace
