#include <windows.h>
#include <gtest/gtest.h>

#include "OldStoreFiles.h"
#include "Owned.h"
#include "RawDatabase.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"

using namespace workbench;
using test_support::read_bytes;
using test_support::TemporaryFolder;
using test_support::write_bytes;

namespace {

class StoreFile : public testing::Test {
 protected:
  std::unique_ptr<RuleStore> open() {
    return open_sqlite_store(path_, {sample_content(), std::chrono::milliseconds(50)});
  }

  void make_by_hand(const std::string& sql) { ASSERT_EQ(RawDatabase(path_).run(sql), SQLITE_OK); }

  /// Opening is refused with this kind, names the file, and leaves the folder as it was.
  void expect_refused_untouched(StoreErrorKind kind) {
    const std::string before = read_bytes(path_);
    const auto error = refusal([&] { open(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), kind);
    EXPECT_EQ(error->subject(), path_.native());
    EXPECT_TRUE(read_bytes(path_) == before);
    const std::filesystem::directory_iterator files(folder_.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
  }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
};

TEST_F(StoreFile, VersionOneIsBroughtToThePresent) {
  make_by_hand(version_1);
  {
    const auto store = open();
    EXPECT_EQ(snapshot_of(*store), (StoreSnapshot{{{4, 1, sample_rule(L"first")}}, {}, sample_content().calendars}));
    EXPECT_EQ(store->add_rule(sample_rule(L"next")).number, 10);
    store->replace_settings({{L"copper", L"first"}});
  }
  EXPECT_EQ(open()->load_settings().size(), 1u);
  EXPECT_EQ(RawDatabase(path_).text("PRAGMA user_version"), "5");
}

TEST_F(StoreFile, VersionTwoIsBroughtToThePresent) {
  make_by_hand(std::string(version_1) + version_2);
  const auto store = open();
  EXPECT_EQ(snapshot_of(*store), old_content_brought_along());
  EXPECT_EQ(store->update_rule(4, sample_rule(L"first"), 1).revision, 2);
}

TEST_F(StoreFile, VersionThreeGetsCalendarsAndNumbersAndWhatShipsForShippedSettingsOnly) {
  make_by_hand(std::string(version_1) + version_2 + version_3);
  {
    const auto store = open();
    EXPECT_EQ(
        snapshot_of(*store),
        (StoreSnapshot{
            {{4, 5, sample_rule(L"first")}},
            {{1, 1, {L"copper", L"first"}}, {2, 1, {L"mine", L"first"}}, {3, 1, sample_setting(L"zinc", L"renamed")}},
            sample_content().calendars}));
    EXPECT_EQ(store->update_setting(2, sample_setting(L"mine", L"first"), 1).revision, 2);
    EXPECT_EQ(store->add_setting(sample_setting(L"next", L"")).number, 4);
  }
  EXPECT_EQ(open()->load_settings()[1], (StoredSetting{2, 2, sample_setting(L"mine", L"first")}));
}

TEST_F(StoreFile, VersionFourKeepsWhatItHasAndRecordsChangesFromNowOn) {
  make_by_hand(std::string(version_1) + version_2 + version_3 + version_4);
  const auto store = open();
  EXPECT_EQ(store->load_rules(), std::vector({StoredRule{4, 5, sample_rule(L"first")}}));
  EXPECT_EQ(settings_of(*store),
            (std::vector<SymbolSourceSetting>{{L"copper", L"first"}, {L"mine", L"first"}, {L"zinc", L"renamed"}}));
  ASSERT_EQ(store->load_calendars().size(), 1u);
  EXPECT_EQ(store->load_calendars()[0].calendar.title, "title");
  EXPECT_TRUE(store->load_changes(4).empty());
  store->update_rule(4, sample_rule(L"renamed"));
  ASSERT_EQ(store->load_changes(4).size(), 1u);
  EXPECT_EQ(store->load_changes(4)[0].old_rule, sample_rule(L"first"));
}

TEST_F(StoreFile, EveryKindOfRecordIsRecordedWithWhatItWas) {
  const auto store = open();
  store->update_rule(1, sample_rule(L"renamed"));
  store->delete_setting(store->load_settings().back().number);
  StoredCalendar calendar = sample_calendar("exchange");
  calendar.calendar.closed.clear();
  store->replace_calendars({calendar});
  RawDatabase file(path_);
  EXPECT_EQ(file.text("SELECT count(DISTINCT ChangeNumber) FROM changed_rows"), "4");
  const auto rows = [&](const std::string& condition) {
    return file.text("SELECT count(*) FROM changed_rows WHERE ChangeNumber > 1 AND " + condition);
  };
  EXPECT_EQ(rows("TableName = 'rules' AND OldRow ->> 'rulename' = 'first' AND NewRow ->> 'rulename' = 'renamed'"), "1");
  EXPECT_EQ(rows("TableName = 'symbol_source_settings' AND NewRow ->> 'rulename' = 'renamed'"), "2");
  EXPECT_EQ(rows("TableName = 'symbol_source_settings' AND RowKey = '3' AND NewRow IS NULL"), "1");
  EXPECT_EQ(rows("TableName = 'calendars' AND json_array_length(OldRow, '$.closeddays') = 2 AND "
                 "json_array_length(NewRow, '$.closeddays') = 0"),
            "1");
  EXPECT_EQ(file.text("SELECT count(*) FROM changes WHERE UserName = ''"), "0");
}

TEST_F(StoreFile, CalendarWithADayThatIsNoneIsRefusedWhenItIsRead) {
  for (const char* change : {"UPDATE closed_days SET Day = '2026-02-30' WHERE Day = '2026-05-04'",
                             "UPDATE closed_days SET Day = '2026-05-08' WHERE Day = '2026-02-30'",
                             "UPDATE calendars SET LastDay = '2026-12-39'"}) {
    open();
    make_by_hand(change);
    EXPECT_EQ(refusal_kind([&] { open()->load_calendars(); }), StoreErrorKind::damaged) << change;
  }
}

TEST_F(StoreFile, MigratedFileHasTheTablesOfANewOne) {
  make_by_hand(version_1);
  open();
  const std::filesystem::path fresh = folder_.path() / L"fresh.db";
  open_sqlite_store(fresh);
  const std::string schema = "SELECT group_concat(sql) FROM (SELECT sql FROM sqlite_schema ORDER BY name)";
  const std::string squeeze = "SELECT replace(replace((" + schema + "), char(10), ''), ' ', '')";
  EXPECT_EQ(RawDatabase(path_).text(squeeze), RawDatabase(fresh).text(squeeze));
}

TEST_F(StoreFile, NewerVersionIsRefused) {
  open();
  make_by_hand("PRAGMA user_version = 6");
  expect_refused_untouched(StoreErrorKind::newer);
}

TEST_F(StoreFile, NewerVersionWithALogBesideItIsLeftToItsProgram) {
  open();
  make_by_hand("PRAGMA user_version = 6");
  RawDatabase newer(path_);
  ASSERT_EQ(newer.run("PRAGMA journal_mode = WAL; CREATE TABLE more (a)"), SQLITE_OK);
  const std::string log = read_bytes(path_.native() + L"-wal");
  ASSERT_FALSE(log.empty());
  EXPECT_EQ(refusal_kind([&] { open(); }), StoreErrorKind::newer);
  EXPECT_TRUE(read_bytes(path_.native() + L"-wal") == log);
}

TEST_F(StoreFile, DatabaseOfAnotherProgramIsRefused) {
  make_by_hand("CREATE TABLE rules (a); INSERT INTO rules VALUES (1)");
  expect_refused_untouched(StoreErrorKind::foreign);
  make_by_hand("PRAGMA application_id = 77; PRAGMA user_version = 1");
  expect_refused_untouched(StoreErrorKind::foreign);
}

TEST_F(StoreFile, AnythingElseIsRefused) {
  for (const std::string& bytes :
       {std::string("x"), std::string("RuleName\tRollOffset\r\n"), std::string(8192, '\0')}) {
    write_bytes(path_, bytes);
    expect_refused_untouched(StoreErrorKind::foreign);
  }
}

TEST_F(StoreFile, FolderIsRefused) {
  std::filesystem::create_directory(path_);
  EXPECT_EQ(refusal_kind([&] { open(); }), StoreErrorKind::unavailable);
}

TEST_F(StoreFile, PathThroughAFileIsRefused) {
  write_bytes(path_, "not a folder");
  EXPECT_EQ(refusal_kind([&] { open_sqlite_store(path_ / L"rules.db"); }), StoreErrorKind::unavailable);
}

TEST_F(StoreFile, FileCutShortAnywhereIsRefused) {
  open();
  const std::string whole = read_bytes(path_);
  for (const std::size_t size : {std::size_t{16}, std::size_t{99}, std::size_t{100}, std::size_t{1000},
                                 std::size_t{4096}, whole.size() / 2, whole.size() - 4096, whole.size() - 1}) {
    SCOPED_TRACE(size);
    write_bytes(path_, whole.substr(0, size));
    expect_refused_untouched(StoreErrorKind::damaged);
  }
}

TEST_F(StoreFile, FileWithAPageOverwrittenIsRefused) {
  open();
  const std::string whole = read_bytes(path_);
  ASSERT_EQ(whole.size() % 4096, 0u);
  // The first hundred bytes of the first page identify the file; they stay those of a store.
  for (std::size_t page = 0; page < whole.size(); page += 4096) {
    SCOPED_TRACE(page / 4096 + 1);
    std::string damaged = whole;
    const std::size_t start = page == 0 ? 100 : page;
    damaged.replace(start, page + 4096 - start, page + 4096 - start, '\xA5');
    write_bytes(path_, damaged);
    expect_refused_untouched(StoreErrorKind::damaged);
  }
}

TEST_F(StoreFile, ContentAgainstTheSchemaIsRefused) {
  open();
  make_by_hand("PRAGMA ignore_check_constraints = ON; UPDATE rules SET DayOfMonth = 32 WHERE RuleID = 1");
  expect_refused_untouched(StoreErrorKind::damaged);
}

TEST_F(StoreFile, MissingTableIsRefusedWhenItIsUsed) {
  open();
  make_by_hand("DROP TABLE symbol_source_settings");
  EXPECT_EQ(refusal_kind([&] { open()->load_settings(); }), StoreErrorKind::damaged);
}

TEST_F(StoreFile, FileHeldByAnotherProgramIsReportedAfterTheWait) {
  const auto store = open();
  const StoreSnapshot before = snapshot_of(*store);
  RawDatabase other(path_);
  ASSERT_EQ(other.run("BEGIN EXCLUSIVE"), SQLITE_OK);
  EXPECT_EQ(refusal_kind([&] { open(); }), StoreErrorKind::locked);
  EXPECT_EQ(refusal_kind([&] { store->add_rule(sample_rule(L"third")); }), StoreErrorKind::locked);
  EXPECT_EQ(refusal_kind([&] { store->load_rules(); }), StoreErrorKind::locked);
  EXPECT_FALSE(store->poll_for_changes());
  ASSERT_EQ(other.run("ROLLBACK"), SQLITE_OK);
  EXPECT_EQ(snapshot_of(*store), before);
  EXPECT_EQ(store->add_rule(sample_rule(L"third")).number, 3);
}

TEST_F(StoreFile, ReaderInAnotherProgramHoldsTheSaveBackWhole) {
  const auto store = open();
  const StoreSnapshot before = snapshot_of(*store);
  RawDatabase other(path_);
  ASSERT_EQ(other.run("BEGIN; SELECT * FROM rules"), SQLITE_OK);
  EXPECT_EQ(refusal_kind([&] { store->delete_rule(2); }), StoreErrorKind::locked);
  EXPECT_EQ(snapshot_of(*store), before);
  ASSERT_EQ(other.run("COMMIT"), SQLITE_OK);
  store->delete_rule(2);
  EXPECT_EQ(store->load_rules().size(), 1u);
}

/// Opens a file as another program does that keeps others from opening it for what is not in `share`.
base::FileHandle open_exclusively(const std::filesystem::path& path, DWORD share) {
  return base::FileHandle(CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST_F(StoreFile, FileThatCannotBeWrittenServesReadersOnly) {
  const StoreSnapshot before = snapshot_of(*open());
  const base::FileHandle held = open_exclusively(path_, FILE_SHARE_READ);
  const auto store = open();
  EXPECT_EQ(snapshot_of(*store), before);
  EXPECT_EQ(refusal_kind([&] { store->add_rule(sample_rule(L"third")); }), StoreErrorKind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->update_rule(1, sample_rule(L"x")); }), StoreErrorKind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->delete_rule(2); }), StoreErrorKind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->replace_settings({}); }), StoreErrorKind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->replace_content({}); }), StoreErrorKind::read_only);
  EXPECT_EQ(refusal([&] { store->delete_rule(2); })->subject(), path_.native());
  EXPECT_EQ(snapshot_of(*store), before);
}

TEST_F(StoreFile, OldVersionThatCannotBeWrittenIsRefused) {
  make_by_hand(version_1);
  const base::FileHandle held = open_exclusively(path_, FILE_SHARE_READ);
  EXPECT_EQ(refusal_kind([&] { open(); }), StoreErrorKind::read_only);
}

TEST_F(StoreFile, FileThatNoOtherProgramMayOpenIsReportedAsHeld) {
  open();
  const base::FileHandle held = open_exclusively(path_, 0);
  EXPECT_EQ(refusal_kind([&] { open(); }), StoreErrorKind::locked);
}

}  // namespace
