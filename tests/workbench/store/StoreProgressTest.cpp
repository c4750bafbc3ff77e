// A store says how far its calls have come, and they can be cancelled each time they do, with nothing half done.
#include <gtest/gtest.h>

#include <functional>

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

/// So many that each statement over all of them reports several times.
constexpr const char* many_settings = R"sql(
  WITH RECURSIVE n (i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 4000)
  INSERT INTO symbol_source_settings (SettingID, SettingName, RuleName)
    SELECT i, 'setting of a usual length ' || i, 'first' FROM n;
)sql";

class StoreProgress : public testing::Test {
 protected:
  std::unique_ptr<RuleStore> open(const schedule::Progress& progress = {}) {
    // A call that is not cancelled fails after this wait.
    return open_sqlite_store(
        path_, {.first_content = sample_content(), .busy_timeout = std::chrono::seconds(10), .progress = progress});
  }

  void make_by_hand(const std::string& sql) { ASSERT_EQ(RawDatabase(path_).run(sql), SQLITE_OK); }

  /// Runs `work` to its end. Returns how often it reports; the share that is done only grows.
  static int reports_of(const std::function<void(const schedule::Progress&)>& work) {
    int reports = 0;
    double last = 0;
    work([&](std::size_t done, std::size_t all) {
      const double share = static_cast<double>(done) / static_cast<double>(all);
      EXPECT_GE(share, last) << "at report " << reports;
      EXPECT_LE(share, 1.0) << "at report " << reports;
      last = share;
      ++reports;
      return true;
    });
    return reports;
  }

  /// Copies count together.
  static schedule::Progress cancel_at(int report) {
    return [left = std::make_shared<int>(report)](std::size_t, std::size_t) { return --*left > 0; };
  }

  /// Opens the file as it is now, cancelled at each report in turn.
  void expect_opening_is_cancelled_with_nothing_changed(int least_reports) {
    const std::string before = read_bytes(path_);
    const int reports = reports_of([&](const schedule::Progress& progress) { open(progress); });
    EXPECT_GE(reports, least_reports);
    for (int report = 1; report <= reports; ++report) {
      write_bytes(path_, before);
      ASSERT_THROW(open(cancel_at(report)), schedule::Cancelled) << report << " of " << reports;
      ASSERT_TRUE(read_bytes(path_) == before) << report << " of " << reports;
      const std::filesystem::directory_iterator files(folder_.path());
      ASSERT_EQ(std::distance(begin(files), end(files)), 1) << report << " of " << reports;
    }
  }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
};

TEST_F(StoreProgress, OpeningOfALargeFileIsCancelled) {
  open();
  make_by_hand(many_settings);
  expect_opening_is_cancelled_with_nothing_changed(10);
  EXPECT_GT(open()->load_settings().size(), 3900u);
}

TEST_F(StoreProgress, MigrationOfALargeFileIsCancelled) {
  make_by_hand(std::string(version_1) + version_2 + version_3 + many_settings);
  expect_opening_is_cancelled_with_nothing_changed(15);
  EXPECT_GT(open()->load_settings().size(), 3900u);
  EXPECT_EQ(RawDatabase(path_).text("PRAGMA user_version"), "5");
}

TEST_F(StoreProgress, OpenStoreReportsNoMoreToWhoOpenedIt) {
  open();
  make_by_hand(many_settings);
  int reports = 0;
  const auto store = open([&](std::size_t, std::size_t) { return ++reports > 0; });
  const int of_opening = reports;
  EXPECT_GT(store->load_settings().size(), 3900u);
  EXPECT_EQ(reports, of_opening);
}

TEST_F(StoreProgress, CreationIsCancelled) {
  write_bytes(path_, "");
  expect_opening_is_cancelled_with_nothing_changed(4);
}

struct Call {
  const char* name;
  void (*call)(RuleStore& store);
};

void PrintTo(const Call& call, std::ostream* stream) { *stream << call.name; }

class CancelledCall : public StoreProgress, public testing::WithParamInterface<Call> {};

INSTANTIATE_TEST_SUITE_P(
    Calls, CancelledCall,
    testing::Values(Call{"LoadRules", [](RuleStore& store) { store.load_rules(); }},
                    Call{"LoadRule", [](RuleStore& store) { store.try_load_rule(1); }},
                    Call{"LoadSettings", [](RuleStore& store) { store.load_settings(); }},
                    Call{"LoadCalendars", [](RuleStore& store) { store.load_calendars(); }},
                    Call{"AddRule", [](RuleStore& store) { store.add_rule(sample_rule(L"third")); }},
                    Call{"UpdateRule", [](RuleStore& store) { store.update_rule(1, sample_rule(L"renamed")); }},
                    Call{"DeleteSetting", [](RuleStore& store) { store.delete_setting(1); }},
                    Call{"ReplaceCalendars", [](RuleStore& store) { store.replace_calendars({}); }},
                    Call{"Import",
                         [](RuleStore& store) {
                           store.import_records({{sample_rule(L"third")}, {}});
                         }}),
    [](const auto& call) { return std::string(call.param.name); });

TEST_P(CancelledCall, DoesNotWaitForAnotherProgramAnyLonger) {
  const auto store = open();
  const StoreSnapshot before = snapshot_of(*store);
  RawDatabase other(path_);
  ASSERT_EQ(other.run("BEGIN EXCLUSIVE"), SQLITE_OK);
  store->set_progress(cancel_at(3));
  EXPECT_THROW(GetParam().call(*store), schedule::Cancelled);
  store->set_progress({});
  ASSERT_EQ(other.run("ROLLBACK"), SQLITE_OK);
  EXPECT_EQ(snapshot_of(*store), before);
  GetParam().call(*store);  // as before
}

TEST_F(StoreProgress, OpeningDoesNotWaitForAnotherProgramAnyLonger) {
  open();
  RawDatabase other(path_);
  ASSERT_EQ(other.run("BEGIN EXCLUSIVE"), SQLITE_OK);
  EXPECT_THROW(open(cancel_at(4)), schedule::Cancelled);
}

TEST_F(StoreProgress, ChangeThatAReaderHoldsBackIsCancelledWhole) {
  const auto store = open();
  const StoreSnapshot before = snapshot_of(*store);
  RawDatabase other(path_);
  ASSERT_EQ(other.run("BEGIN; SELECT * FROM rules"), SQLITE_OK);
  store->set_progress(cancel_at(3));
  EXPECT_THROW(store->delete_rule(2), schedule::Cancelled);
  store->set_progress({});
  EXPECT_EQ(snapshot_of(*store), before);
  ASSERT_EQ(other.run("COMMIT"), SQLITE_OK);
  store->delete_rule(2);
}

TEST_F(StoreProgress, LongCallsAreCancelledWhole) {
  open();
  make_by_hand(many_settings);
  const auto store = open();
  const std::vector<StoredSetting> before = store->load_settings();
  const auto cancelled_at_each_report = [&](const std::function<void()>& call) {
    const int reports = reports_of([&](const schedule::Progress& progress) {
      store->set_progress(progress);
      call();
    });
    EXPECT_GE(reports, 3);
    for (int report = 1; report <= reports; ++report) {
      store->set_progress(cancel_at(report));
      ASSERT_THROW(call(), schedule::Cancelled) << report << " of " << reports;
      store->set_progress({});
      ASSERT_EQ(store->load_settings(), before) << report << " of " << reports;
    }
  };
  cancelled_at_each_report([&] { store->load_settings(); });
  Rule renamed = store->load_rules().front().rule;
  renamed.name = L"renamed";
  const auto rename = [&] { store->update_rule(1, renamed); };
  store->set_progress(cancel_at(2));
  EXPECT_THROW(rename(), schedule::Cancelled) << "all settings follow";
  store->set_progress({});
  EXPECT_EQ(store->load_settings(), before);
  rename();
  EXPECT_NE(store->load_settings(), before);
}

TEST_F(StoreProgress, WhatTheProgressThrowsLeavesTheCall) {
  const auto store = open();
  RawDatabase other(path_);
  ASSERT_EQ(other.run("BEGIN EXCLUSIVE"), SQLITE_OK);
  store->set_progress([](std::size_t, std::size_t) -> bool { throw std::runtime_error("test"); });
  EXPECT_THROW(store->load_rules(), std::runtime_error);
}

}  // namespace
