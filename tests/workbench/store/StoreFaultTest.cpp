#include <gtest/gtest.h>

#include <functional>

#include "Depth.h"
#include "FaultLoop.h"
#include "FaultyFileSystem.h"
#include "OldStoreFiles.h"
#include "RawDatabase.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"

using namespace workbench;
using test_support::FaultDuration;
using test_support::read_bytes;
using test_support::TemporaryFolder;
using test_support::write_bytes;

namespace {

struct DiskFault {
  const char* name;
  void (*arm)(FaultyFileSystem& disk, std::size_t number);
};

void PrintTo(const DiskFault& fault, std::ostream* stream) { *stream << fault.name; }

struct Change {
  const char* name;
  void (*apply)(RuleStore& store);
};

void PrintTo(const Change& change, std::ostream* stream) { *stream << change.name; }

constexpr DiskFault faults[] = {
    {"BrokenOnce", [](FaultyFileSystem& disk, std::size_t number) { disk.break_call(number, FaultDuration::once); }},
    {"Full", [](FaultyFileSystem& disk, std::size_t number) { disk.fill_at_write(number); }},
    {"Broken", [](FaultyFileSystem& disk, std::size_t number) { disk.break_call(number, FaultDuration::lasting); }},
};

constexpr Change changes[] = {
    {"Add", [](RuleStore& store) { store.add_rule(sample_rule(L"third")); }},
    {"Update", [](RuleStore& store) { store.update_rule(1, sample_rule(L"renamed")); }},
    {"Delete", [](RuleStore& store) { store.delete_rule(2); }},
    {"ReplaceSettings",
     [](RuleStore& store) {
       store.replace_settings({{L"other", L"second"}});
     }},
    {"AddSetting", [](RuleStore& store) { store.add_setting(sample_setting(L"other", L"second")); }},
    {"UpdateSetting", [](RuleStore& store) { store.update_setting(1, sample_setting(L"other", L"second")); }},
    {"DeleteSetting", [](RuleStore& store) { store.delete_setting(3); }},
    {"ReplaceCalendars",
     [](RuleStore& store) {
       StoredCalendar changed = sample_calendar("exchange");
       changed.calendar.closed.pop_back();
       store.replace_calendars({changed, sample_calendar("other")});
     }},
    {"Import",
     [](RuleStore& store) {
       store.import_records({{sample_rule(L"third"), {.name = L"second"}}, std::vector{sample_setting(L"other", L"")}});
     }},
    {"ReplaceContent",
     [](RuleStore& store) {
       store.replace_content({{sample_rule(L"only")}, {}});
     }},
};

/// Every kind of fault for every change; without a deep run one kind for every change and every kind for one of them.
std::vector<std::tuple<DiskFault, Change>> faults_of_changes() {
  std::vector<std::tuple<DiskFault, Change>> cases;
  for (const DiskFault& fault : faults) {
    for (const Change& change : changes) {
      if (test_support::deep() || &fault == &faults[0] || &change == &changes[0]) cases.emplace_back(fault, change);
    }
  }
  return cases;
}

std::unique_ptr<RuleStore> open(const std::filesystem::path& path) {
  return open_sqlite_store(path, {sample_content(), std::chrono::milliseconds(10)});
}

StoreSnapshot reopened(const std::filesystem::path& path) { return snapshot_of(*open(path)); }

/// A disk that fails in one way, at every call where it can.
template <class Parameter>
class OnAFaultyDisk : public testing::TestWithParam<Parameter> {
 protected:
  /// For each call of the disk: `prepare` readies a file and returns what is done while that call fails; `check` gets
  /// the file, on a disk that works again, and the error if there was one. Returns how many errors there were.
  template <class Check>
  int fail_each_call(const DiskFault& fault,
                     const std::function<std::function<void()>(const std::filesystem::path& path)>& prepare,
                     const Check& check) {
    int refused = 0;
    test_support::fail_each_call([&](std::size_t number) {
      const std::filesystem::path path = folder_.path() / (std::to_wstring(number) + L".db");
      const std::function<void()> act = prepare(path);
      fault.arm(disk_, number);
      const auto error = refusal(act);
      disk_.clear_faults();
      refused += error.has_value();
      check(path, error);
      return disk_.has_failed() ? std::optional<std::string>(fault.name) : std::nullopt;
    });
    return refused;
  }

  TemporaryFolder folder_;
  FaultyFileSystem disk_;
};

/// One kind of change.
using StoreFault = OnAFaultyDisk<std::tuple<DiskFault, Change>>;

INSTANTIATE_TEST_SUITE_P(Disks, StoreFault, testing::ValuesIn(faults_of_changes()), [](const auto& test) {
  return std::string(std::get<0>(test.param).name) + std::get<1>(test.param).name;
});

TEST_P(StoreFault, ChangeIsReportedAndTheOldContentStaysOrItIsKept) {
  const DiskFault& fault = std::get<0>(GetParam());
  const Change& change = std::get<1>(GetParam());
  const std::filesystem::path path = folder_.path() / L"rules.db";
  const StoreSnapshot before = reopened(path);
  const std::string bytes = read_bytes(path);
  change.apply(*open(path));
  const StoreSnapshot after = reopened(path);
  std::unique_ptr<RuleStore> store;
  const auto prepare = [&](const std::filesystem::path& copy) {
    write_bytes(copy, bytes);
    store = open(copy);
    return [&] { change.apply(*store); };
  };
  const int refused = fail_each_call(fault, prepare, [&](const std::filesystem::path& copy, const auto& error) {
    EXPECT_EQ(snapshot_of(*store), error ? before : after);
    store.reset();
    EXPECT_EQ(reopened(copy), error ? before : after);
  });
  EXPECT_GT(refused, 2);
}

TEST(StoreOnAFullDisk, EveryChangeIsRefusedAsFull) {
  for (const Change& change : changes) {
    TemporaryFolder folder;
    FaultyFileSystem disk;
    const auto store = open(folder.path() / L"rules.db");
    disk.fill_at_write(1);
    EXPECT_EQ(refusal_kind([&] { change.apply(*store); }), StoreErrorKind::full) << change.name;
    disk.clear_faults();
    EXPECT_EQ(refusal_kind([&] { change.apply(*store); }), std::nullopt) << change.name;
  }
}

/// A store that could not ask for the changes of others when it opened says at its first look that there may be one.
TEST(StoreHeldByAnotherProgram, OpensAndMissesNoChange) {
  TemporaryFolder folder;
  FaultyFileSystem disk;
  const std::filesystem::path path = folder.path() / L"rules.db";
  open(path);
  int changes_found = 0;
  const std::size_t held = test_support::fail_each_call([&](std::size_t number) {
    disk.hold_at_lock(number);
    const auto store = open(path);
    disk.clear_faults();
    changes_found += store->poll_for_changes();
    EXPECT_FALSE(store->poll_for_changes());
    return disk.has_failed() ? std::optional<std::string>("a lock") : std::nullopt;
  });
  EXPECT_GT(held, 1u);
  EXPECT_EQ(changes_found, 1);
}

using StoreCreationFault = OnAFaultyDisk<DiskFault>;

// That a disk breaks for good is left to the deep run: the changes show it.
INSTANTIATE_TEST_SUITE_P(Disks, StoreCreationFault,
                         testing::ValuesIn(faults, std::end(faults) - (test_support::deep() ? 0 : 1)),
                         [](const auto& test) { return test.param.name; });

TEST_P(StoreCreationFault, HalfCreatedFileIsCompletedNextTime) {
  const auto prepare = [](const std::filesystem::path& path) { return [path] { open(path); }; };
  const int refused = fail_each_call(GetParam(), prepare, [](const std::filesystem::path& path, const auto&) {
    const auto store = open(path);
    EXPECT_EQ(store->load_rules().size(), sample_content().rules.size());
    EXPECT_EQ(settings_of(*store), sample_content().settings);
    EXPECT_EQ(store->load_calendars(), sample_content().calendars);
  });
  EXPECT_GT(refused, 0);
}

TEST_P(StoreCreationFault, HalfMigratedFileIsMigratedWholeNextTime) {
  const std::filesystem::path old = folder_.path() / L"old.db";
  ASSERT_EQ(RawDatabase(old).run(std::string(version_1) + version_2), SQLITE_OK);
  const auto prepare = [&](const std::filesystem::path& path) {
    std::filesystem::copy_file(old, path);
    return [path] { open(path); };
  };
  const int refused = fail_each_call(GetParam(), prepare, [](const std::filesystem::path& path, const auto&) {
    EXPECT_EQ(reopened(path), old_content_brought_along());
  });
  EXPECT_GT(refused, 0);
}

}  // namespace
