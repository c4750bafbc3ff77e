#include <gtest/gtest.h>

#include "FaultyFileSystem.h"
#include "OldStoreFiles.h"
#include "RawDatabase.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"

using namespace workbench;
using test_support::read_bytes;
using test_support::TemporaryFolder;
using test_support::write_bytes;

namespace {

struct DiskFault {
  const char* name;
  void (*order)(FaultyFileSystem& disk, int nth);
};

void PrintTo(const DiskFault& fault, std::ostream* stream) { *stream << fault.name; }

struct Change {
  const char* name;
  void (*make)(RuleStore& store);
};

void PrintTo(const Change& change, std::ostream* stream) { *stream << change.name; }

constexpr DiskFault faults[] = {
    {"Full", [](FaultyFileSystem& disk, int nth) { disk.fill_at_write(nth); }},
    {"BrokenOnce", [](FaultyFileSystem& disk, int nth) { disk.break_call(nth, false); }},
    {"Broken", [](FaultyFileSystem& disk, int nth) { disk.break_call(nth, true); }},
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
    {"ReplaceContent",
     [](RuleStore& store) {
       store.replace_content({{sample_rule(L"only")}, {}});
     }},
};

std::unique_ptr<RuleStore> open(const std::filesystem::path& path) {
  return open_sqlite_store(path, {sample_content(), std::chrono::milliseconds(10)});
}

StoreSnapshot reopened(const std::filesystem::path& path) { return holdings(*open(path)); }

/// One kind of change on a disk that fails in one way, at every point where it can.
class StoreFault : public testing::TestWithParam<std::tuple<DiskFault, Change>> {
 protected:
  TemporaryFolder folder_;
  FaultyFileSystem disk_;
};

INSTANTIATE_TEST_SUITE_P(Disks, StoreFault, testing::Combine(testing::ValuesIn(faults), testing::ValuesIn(changes)),
                         [](const auto& test) {
                           return std::string(std::get<0>(test.param).name) + std::get<1>(test.param).name;
                         });

TEST_P(StoreFault, ChangeIsReportedAndTheOldContentStaysOrItIsKept) {
  const DiskFault& fault = std::get<0>(GetParam());
  const Change& change = std::get<1>(GetParam());
  const std::filesystem::path path = folder_.path() / L"rules.db";
  const StoreSnapshot before = reopened(path);
  const std::string bytes = read_bytes(path);
  change.make(*open(path));
  const StoreSnapshot after = reopened(path);
  int refused = 0;
  for (int nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    std::filesystem::remove(path.native() + L"-journal");
    write_bytes(path, bytes);
    auto store = open(path);
    fault.order(disk_, nth);
    const auto error = refusal([&] { change.make(*store); });
    const bool failed = disk_.failed();
    disk_.mend();
    if (!failed) break;
    refused += error.has_value();
    EXPECT_EQ(holdings(*store), error ? before : after);
    store.reset();
    ASSERT_EQ(reopened(path), error ? before : after);
  }
  EXPECT_GT(refused, 2);
}

TEST(StoreOnAFullDisk, EveryChangeSaysSo) {
  for (const Change& change : changes) {
    TemporaryFolder folder;
    FaultyFileSystem disk;
    const auto store = open(folder.path() / L"rules.db");
    disk.fill_at_write(1);
    EXPECT_EQ(refusal_kind([&] { change.make(*store); }), StoreErrorKind::full) << change.name;
    disk.mend();
    EXPECT_EQ(refusal_kind([&] { change.make(*store); }), std::nullopt) << change.name;
  }
}

/// A store that could not ask for the changes of others when it opened says at its first look that there may be one.
TEST(StoreHeldByAnotherProgram, OpensAndMissesNoChange) {
  TemporaryFolder folder;
  FaultyFileSystem disk;
  const std::filesystem::path path = folder.path() / L"rules.db";
  open(path);
  int held = 0;
  int told = 0;
  for (;; ++held) {
    disk.hold_at_lock(held + 1);
    const auto store = open(path);
    const bool failed = disk.failed();
    disk.mend();
    if (!failed) break;
    told += store->poll_for_changes();
    EXPECT_FALSE(store->poll_for_changes());
  }
  EXPECT_GT(held, 1);
  EXPECT_EQ(told, 1);
}

class StoreMakingFault : public testing::TestWithParam<DiskFault> {
 protected:
  TemporaryFolder folder_;
  FaultyFileSystem disk_;
};

INSTANTIATE_TEST_SUITE_P(Disks, StoreMakingFault, testing::ValuesIn(faults),
                         [](const auto& test) { return test.param.name; });

TEST_P(StoreMakingFault, HalfMadeFileIsMadeWholeNextTime) {
  int refused = 0;
  for (int nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    const std::filesystem::path path = folder_.path() / (std::to_wstring(nth) + L".db");
    GetParam().order(disk_, nth);
    const auto error = refusal([&] { open(path); });
    const bool failed = disk_.failed();
    disk_.mend();
    if (!failed) break;
    refused += error.has_value();
    const auto store = open(path);
    EXPECT_EQ(store->load_rules().size(), sample_content().rules.size());
    EXPECT_EQ(settings_of(*store), sample_content().settings);
    EXPECT_EQ(store->load_calendars(), sample_content().calendars);
  }
  EXPECT_GT(refused, 0);
}

TEST_P(StoreMakingFault, HalfMigratedFileIsMigratedWholeNextTime) {
  const std::filesystem::path old = folder_.path() / L"old.db";
  ASSERT_EQ(RawDatabase(old).run(std::string(version_1) + version_2), SQLITE_OK);
  int refused = 0;
  for (int nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    const std::filesystem::path path = folder_.path() / (std::to_wstring(nth) + L".db");
    std::filesystem::copy_file(old, path);
    GetParam().order(disk_, nth);
    const auto error = refusal([&] { open(path); });
    const bool failed = disk_.failed();
    disk_.mend();
    if (!failed) break;
    refused += error.has_value();
    EXPECT_EQ(reopened(path), old_content_brought_along());
  }
  EXPECT_GT(refused, 0);
}

}  // namespace
