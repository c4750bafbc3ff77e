#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "Depth.h"
#include "FirstContent.h"
#include "Owned.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "StoreWriter.h"
#include "TemporaryFolder.h"

using namespace workbench;
using test_support::TemporaryFolder;

namespace {

class SeveralHosts : public testing::Test {
 protected:
  std::unique_ptr<RuleStore> open() { return open_sqlite_store(path_, {first_content(), std::chrono::seconds(30)}); }

  std::wstring arguments(const std::wstring& rest) const { return L'"' + path_.native() + L"\" " + rest; }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
};

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
  const auto each = static_cast<unsigned>(test_support::repetitions(150, 60));
  open()->update_rule(1, {.name = L"0"});
  base::KernelHandle start(CreateEventW(nullptr, TRUE, FALSE, L"zdExpirationRules.counting"));
  StoreWriter left(arguments(L"count 1 " + std::to_wstring(each)));
  StoreWriter right(arguments(L"count 1 " + std::to_wstring(each)));
  for (StoreWriter* host : {&left, &right}) EXPECT_EQ(host->next_acknowledged(), 0u) << "it is not ready";
  std::set<unsigned> numbers;
  EXPECT_TRUE(SetEvent(start.get()));
  start.reset();
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
  EXPECT_EQ(std::chrono::seconds(3), SqliteStoreOptions().busy_timeout);
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
  EXPECT_EQ(open()->load_rules().size(), first_content().rules.size() + 2);
  EXPECT_EQ(settings_of(*open()), first_content().settings);
  EXPECT_EQ(open()->load_calendars(), first_content().calendars);
}

}  // namespace
