#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include "ChildProcess.h"
#include "Depth.h"
#include "FirstContent.h"
#include "MemoryRuleStore.h"
#include "ModulePath.h"
#include "RandomCases.h"
#include "RawDatabase.h"
#include "RuleStream.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "StoreWriter.h"
#include "TemporaryFolder.h"

using namespace workbench;
using test_support::TemporaryFolder;

namespace {

/// The change of a host with this number, applied to a store with the same content.
void apply_change(RuleStore& store, unsigned number) try {
  const StreamChange change = choose_change(store.load_rules(), number);
  switch (change.kind) {
    case StreamChange::Kind::add:
      store.add_rule(change.rule);
      return;
    case StreamChange::Kind::update:
      store.update_rule(change.old.number, change.rule);
      return;
    case StreamChange::Kind::remove:
      store.delete_rule(change.old.number);
  }
} catch (const StoreError& error) {
  if (error.kind() != StoreErrorKind::in_use) throw;
}

/// The content of a store file that no program has open; a file that was never filled holds nothing. Opens a copy,
/// because the next host must recover the file itself.
StoreSnapshot left_behind(const std::filesystem::path& path) {
  const TemporaryFolder folder;
  const std::filesystem::path copy = folder.path() / L"copy.db";
  for (const wchar_t* part : {L"", L"-journal"}) {
    const std::filesystem::path original = path.native() + part;
    if (std::filesystem::exists(original)) std::filesystem::copy_file(original, copy.native() + part);
  }
  EXPECT_EQ(RawDatabase(copy).text("PRAGMA integrity_check"), "ok");
  return snapshot_of(*open_sqlite_store(copy));
}

std::vector<StoredRule> without(std::vector<StoredRule> rules, const std::vector<StoredRule>& others) {
  std::erase_if(rules, [&](const StoredRule& rule) { return std::ranges::find(others, rule) != others.end(); });
  return rules;
}

/// The reference host with its window, on a store that a plug-in changes without an end until the host is killed.
class KilledHost {
 public:
  KilledHost(const std::filesystem::path& store, unsigned first_change)
      : next_(first_change), host_(arguments(store, first_change), L"workbench.exe") {}

  /// Waits until it has begun or acknowledged so many changes.
  void wait_for(unsigned steps) {
    for (; steps > 0; --steps) ASSERT_TRUE(hear()) << "the host has ended by itself";
  }

  /// Waits until there is this file.
  void wait_for_file(const std::filesystem::path& file) {
    while (!std::filesystem::exists(file)) ASSERT_FALSE(host_.ends_within(1)) << "the host has ended by itself";
  }

  void kill() {
    host_.kill();
    ASSERT_EQ(host_.exit_code(), StoreWriter::killed) << "the host had ended by itself";
    while (hear()) continue;
  }

  /// The number after that of the last change that it acknowledged.
  unsigned next() const { return next_; }
  /// Whether it had begun that change.
  bool amid_change() const { return amid_change_; }

 private:
  static std::wstring arguments(const std::filesystem::path& store, unsigned first_change) {
    SetEnvironmentVariableW(first_change_variable, std::to_wstring(first_change).c_str());
    return L"--module \"" + base::path_beside_program(L"rule_stream.dll") + L"\" --store \"" + store.native() + L'"';
  }

  bool hear() {
    const auto said = host_.next_progress();
    if (!said) return false;
    EXPECT_EQ(said->number, next_);
    EXPECT_EQ(said->acknowledged, amid_change_);
    amid_change_ = !said->acknowledged;
    if (said->acknowledged) ++next_;
    return true;
  }

  unsigned next_;
  bool amid_change_ = false;
  StoreWriter host_;
};

/// When the hosts of a test were killed.
struct Kills {
  unsigned before_changes = 0;
  unsigned between_changes = 0;
  unsigned amid_changes = 0;
  unsigned left_journal = 0;  ///< of all

  unsigned among_changes() const { return between_changes + amid_changes; }
  void print() const {
    std::cout << "[ kills  ] " << before_changes << " before the first change, " << between_changes
              << " between two changes, " << amid_changes << " in the middle of one; " << left_journal
              << " left a journal\n";
  }
};

class KilledHosts : public testing::Test {
 protected:
  KilledHosts() { begin_new_store(); }

  void begin_new_store() {
    path_ = folder_.path() / (L"rules " + std::to_wstring(++stores_) + L".db");
    model_ = std::make_unique<MemoryRuleStore>();
    model_->replace_content(first_content());
    filled_ = false;
  }

  /// Starts a host, kills it after `wait`, and compares what it leaves with what it acknowledged.
  template <class Wait>
  void strike(const Wait& wait) {
    KilledHost host(path_, next_);
    wait(host);
    host.kill();
    if (HasFatalFailure()) return;
    count(host);
    compare(host);
  }

  /// Waits for up to so many milliseconds.
  void wait_at_most(unsigned most) { Sleep(random_.below(most + 1)); }

  test_support::RandomCases random_;
  Kills kills_;
  std::filesystem::path path_;
  bool filled_ = false;  ///< whether a host has created the store

 private:
  void count(const KilledHost& host) {
    if (host.amid_change())
      ++kills_.amid_changes;
    else if (host.next() != next_)
      ++kills_.between_changes;
    else
      ++kills_.before_changes;
    if (std::filesystem::exists(path_.native() + L"-journal")) ++kills_.left_journal;
  }

  void compare(const KilledHost& host) {
    const bool changed = host.amid_change() || host.next() != next_;
    const StoreSnapshot found = left_behind(path_);
    if (!filled_ && !changed && found == StoreSnapshot{}) return;
    filled_ = true;
    while (next_ != host.next()) apply_change(*model_, next_++);
    // The change under way may be stored without being acknowledged.
    if (host.amid_change() && found != snapshot_of(*model_)) apply_change(*model_, next_++);
    const StoreSnapshot expected = snapshot_of(*model_);
    ASSERT_TRUE(found == expected) << "rules that should not be there: "
                                   << testing::PrintToString(without(found.rules, expected.rules))
                                   << "\nrules that are missing: "
                                   << testing::PrintToString(without(expected.rules, found.rules))
                                   << "\nwhere both are empty, the settings differ";
  }

  TemporaryFolder folder_;
  int stores_ = 0;
  std::unique_ptr<MemoryRuleStore> model_;
  unsigned next_ = random_.bits();
};

/// How long the activity after so many steps usually takes: the start, a change, or the rest before the next change.
/// The test holds for any moment of the kill; this only distributes the kills over all activities.
unsigned usual_duration_ms(const KilledHost& host, unsigned steps) {
  if (steps == 0) return 300;
  return host.amid_change() ? 4 : 12;
}

TEST_F(KilledHosts, LeaveExactlyWhatTheyAcknowledged) {
  const auto kills = static_cast<unsigned>(test_support::repetitions(200, 25));
  for (int round = 0; kills_.among_changes() < kills; ++round) {
    SCOPED_TRACE(random_.trace(round));
    const unsigned steps = random_.below(8) ? 1 + random_.below(16) : 0;
    ASSERT_NO_FATAL_FAILURE(strike([&](KilledHost& host) {
      host.wait_for(steps);
      wait_at_most(usual_duration_ms(host, steps));
    }));
  }
  kills_.print();
  EXPECT_GT(kills_.amid_changes, 0u) << "no kill came during a change";
  EXPECT_EQ(RawDatabase(path_).text("PRAGMA integrity_check"), "ok");
}

TEST_F(KilledHosts, LeaveANewStoreEmptyOrComplete) {
  const auto kills = static_cast<unsigned>(test_support::repetitions(20, 3));
  unsigned unfilled = 0;
  for (int round = 0; unfilled < kills; ++round) {
    SCOPED_TRACE(random_.trace(round));
    begin_new_store();
    ASSERT_NO_FATAL_FAILURE(strike([&](KilledHost& host) {
      host.wait_for_file(path_);
      // Some are killed at once: a fast disk leaves little time.
      if (round % 2 == 0) wait_at_most(8);
    }));
    if (!filled_) ++unfilled;
    ASSERT_NO_FATAL_FAILURE(strike([&](KilledHost& host) { host.wait_for(1); }));
    ASSERT_TRUE(filled_);
  }
  std::cout << "[ kills  ] " << unfilled << " before a new store was filled\n";
  kills_.print();
}

}  // namespace
