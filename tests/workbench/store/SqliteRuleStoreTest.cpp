#include <windows.h>
#include <gtest/gtest.h>

#include "Depth.h"
#include "JsonRecords.h"
#include "RawDatabase.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"
#include "Wtf8.h"

using namespace workbench;
using test_support::read_bytes;
using test_support::TemporaryFolder;
using test_support::write_bytes;

namespace {

class SqliteRuleStore : public testing::Test {
 protected:
  std::unique_ptr<RuleStore> open() { return open_sqlite_store(path_, {sample_content(), {}}); }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
};

TEST_F(SqliteRuleStore, NewFileHoldsTheFirstContent) {
  const StoreSnapshot now = snapshot_of(*open());
  ASSERT_EQ(now.rules.size(), 2u);
  EXPECT_EQ(now.rules[0], (StoredRule{1, 1, sample_content().rules[0]}));
  EXPECT_EQ(now.rules[1], (StoredRule{2, 1, sample_content().rules[1]}));
  ASSERT_EQ(now.settings.size(), 3u);
  for (long i = 0; i < 3; ++i) EXPECT_EQ(now.settings[i], (StoredSetting{i + 1, 1, sample_content().settings[i]}));
  EXPECT_EQ(now.calendars, sample_content().calendars);
}

TEST_F(SqliteRuleStore, EmptyFileCountsAsNew) {
  write_bytes(path_, "");
  EXPECT_EQ(open()->load_rules().size(), 2u);
}

TEST_F(SqliteRuleStore, FirstContentComesOnlyOnce) {
  {
    const auto store = open();
    store->replace_settings({});
    store->delete_rule(1);
    store->delete_rule(2);
  }
  EXPECT_EQ(snapshot_of(*open()), (StoreSnapshot{{}, {}, sample_content().calendars}));
}

TEST_F(SqliteRuleStore, CancelledCreationLeavesAnEmptyFileThatCanBeFilledLater) {
  int left = 3;
  const auto cancel = [&](std::size_t, std::size_t) { return --left > 0; };
  EXPECT_THROW(open_sqlite_store(path_, {.first_content = sample_content(), .progress = cancel}), schedule::Cancelled);
  EXPECT_EQ(read_bytes(path_), "");
  EXPECT_EQ(open()->load_rules().size(), 2u);
}

TEST_F(SqliteRuleStore, MissingFileIsRefusedByACallerThatMayNotCreateIt) {
  const auto open_existing = [&] { return open_sqlite_store(path_, {.may_create = false}); };
  path_ = folder_.path() / L"missing" / L"rules.db";
  EXPECT_EQ(refusal_kind(open_existing), StoreErrorKind::missing);
  EXPECT_FALSE(std::filesystem::exists(path_.parent_path()));
  path_ = folder_.path() / L"rules.db";
  write_bytes(path_, "");
  EXPECT_EQ(refusal_kind(open_existing), StoreErrorKind::missing);
  EXPECT_EQ(read_bytes(path_), "");
  open();
  EXPECT_EQ(open_existing()->load_rules().size(), 2u);
}

/// A copy with gaps in its numbers, whose last ones were given to deleted records.
StoreCopy sample_copy() {
  return {{{3, 7, sample_rule(L"first")}, {8, 1, sample_rule(awkward_names().back())}},
          {{2, 5, sample_setting(L"lead", L"first")}, {9, 1, sample_setting(L"lead", L"gone")}},
          {sample_calendar("exchange")},
          11,
          12,
          {{std::string(32, 'a'), L"anna \u4E2D\xD800", L"2026-01-16T08:30:05.123Z", {}},
           {std::string(32, '0'),
            L"",
            L"2026-01-15T23:59:59.999Z",
            {{"rules", "8", {}, record_as_json(StoredRule{8, 1, sample_rule(L"was")})},
             {"rules", "9", record_as_json(StoredRule{9, 3, sample_rule(L"gone")}), {}},
             {"closed_days", "exchange", R"([{"day":"2026-01-01"}])", {}}}}}};
}

TEST_F(SqliteRuleStore, CopyKeepsNumbersRevisionsAndWhatComesNext) {
  const StoreCopy copy = sample_copy();
  {
    const auto store = open_sqlite_store(path_, {.copied = &copy});
    EXPECT_EQ(store->copy(), copy);
  }
  const auto store = open();
  EXPECT_EQ(store->copy(), copy);
  EXPECT_EQ(store->load_changes(8), (std::vector<RuleChange>{{L"", copy.changes[1].time, {}, sample_rule(L"was")}}));
  EXPECT_EQ(store->add_rule(sample_rule(L"next")).number, 12);
  EXPECT_EQ(store->add_setting(sample_setting(L"next", L"")).number, 13);
}

TEST_F(SqliteRuleStore, CopyHoldsWhoChangedWhat) {
  const auto store = open();
  const std::size_t before = store->copy().changes.size();
  store->import_records({{sample_rule(L"third"), {.name = L"first"}}});
  store->replace_calendars({sample_calendar("other")});
  store->delete_rule(2);
  const std::vector<StoredChange> changes = store->copy().changes;
  ASSERT_EQ(changes.size(), before + 3);
  for (long number = 1; number <= 3; ++number) {
    std::vector<RuleChange> of_rule;
    for (const StoredChange& change : changes)
      for (const ChangedRow& row : change.rows)
        if (row.table == "rules" && row.key == std::to_string(number))
          of_rule.push_back(
              {change.user, change.time, try_rule_from_json(row.old_row), try_rule_from_json(row.new_row)});
    EXPECT_EQ(of_rule, store->load_changes(number));
  }
  EXPECT_EQ(changes[before + 1].rows,
            (std::vector<ChangedRow>{{"calendars", "other", {}, record_as_json(sample_calendar("other"))}}));
  RawDatabase(path_).run("UPDATE changed_rows SET NewRow = 'x'");
  EXPECT_EQ(refusal_kind([&] { store->copy(); }), StoreErrorKind::damaged);
}

TEST_F(SqliteRuleStore, CopyThatGaveNoNumberYetBeginsWithTheFirst) {
  const StoreCopy nothing;
  const auto store = open_sqlite_store(path_, {.copied = &nothing});
  EXPECT_EQ(store->copy(), nothing);
  EXPECT_EQ(store->add_rule(sample_rule(L"first")).number, 1);
}

TEST_F(SqliteRuleStore, CopyReplacesNoStore) {
  open();
  const std::string before = read_bytes(path_);
  const StoreCopy copy = sample_copy();
  EXPECT_EQ(refusal_kind([&] { open_sqlite_store(path_, {.copied = &copy}); }), StoreErrorKind::exists);
  EXPECT_EQ(read_bytes(path_), before);
  const std::filesystem::path empty = folder_.path() / L"empty.db";
  const StoreCopy nothing;
  open_sqlite_store(empty, {.copied = &nothing});
  EXPECT_EQ(refusal_kind([&] { open_sqlite_store(empty, {.copied = &copy}); }), StoreErrorKind::exists);
}

TEST_F(SqliteRuleStore, RefusedOrCancelledCopyLeavesAnEmptyFile) {
  StoreCopy copy = sample_copy();
  for (int last = 1; last <= 4; ++last) {
    int left = last;
    const auto cancel = [&](std::size_t, std::size_t) { return --left > 0; };
    EXPECT_THROW(open_sqlite_store(path_, {.progress = cancel, .copied = &copy}), schedule::Cancelled) << last;
    EXPECT_EQ(read_bytes(path_), "");
  }
  copy.rules[1].rule.name = copy.rules[0].rule.name;
  EXPECT_EQ(refusal_kind([&] { open_sqlite_store(path_, {.copied = &copy}); }), StoreErrorKind::duplicate_name);
  EXPECT_EQ(read_bytes(path_), "");
}

TEST_F(SqliteRuleStore, FileThatCannotBeWrittenIsCopied) {
  open();
  SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_READONLY);
  const auto store = open();
  EXPECT_EQ(store->copy().rules.size(), 2u);
  SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(SqliteRuleStore, NoFileIsLeftWhenTheFirstContentIsInvalid) {
  StoreContent nameless = sample_content();
  nameless.rules.emplace_back();
  EXPECT_EQ(refusal_kind([&] { open_sqlite_store(path_, {nameless, {}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(read_bytes(path_), "");
  EXPECT_EQ(open()->load_rules().size(), 2u);
}

TEST_F(SqliteRuleStore, ContentSurvivesReopening) {
  StoreSnapshot before;
  {
    const auto store = open();
    for (const std::wstring& name : awkward_names()) store->add_rule(sample_rule(name));
    store->update_rule(1, sample_rule(L"renamed"));
    store->delete_rule(2);
    for (const std::wstring& name : awkward_names()) store->add_setting(sample_setting(name, name));
    store->delete_setting(2);
    store->replace_calendars({sample_calendar("交易所")});
    before = snapshot_of(*store);
  }
  EXPECT_EQ(snapshot_of(*open()), before);
}

TEST_F(SqliteRuleStore, NumbersAreNotReusedAfterReopening) {
  const long last = open()->add_rule(sample_rule(L"last")).number;
  open()->delete_rule(last);
  EXPECT_EQ(open()->add_rule(sample_rule(L"next")).number, last + 1);
  const long last_setting = open()->add_setting(sample_setting(L"last", L"")).number;
  open()->replace_settings({});
  EXPECT_EQ(open()->add_setting(sample_setting(L"next", L"")).number, last_setting + 1);
}

TEST_F(SqliteRuleStore, MissingFoldersAreCreatedAndAnyPathServes) {
  path_ = folder_.path() / L"到期 规则\u00E9" / L"deep" / L"100% rules;.db";
  open()->delete_rule(2);
  EXPECT_EQ(open()->load_rules().size(), 1u);
  EXPECT_TRUE(std::filesystem::exists(path_));
}

TEST_F(SqliteRuleStore, OneFileIsAllThatIsLeft) {
  open()->add_rule(sample_rule(L"more"));
  const std::filesystem::directory_iterator files(folder_.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST_F(SqliteRuleStore, OtherToolsReadTheNames) {
  open()->add_rule(sample_rule(L"沪深300 \U0001F4C8"));
  RawDatabase raw(path_);
  EXPECT_EQ(raw.text("SELECT RuleName FROM rules WHERE RuleID = 3"), to_wtf8(L"沪深300 \U0001F4C8"));
  EXPECT_EQ(raw.text("SELECT typeof(RuleName) FROM rules WHERE RuleID = 3"), "text");
}

TEST_F(SqliteRuleStore, SchemaItselfKeepsTheRanges) {
  open();
  RawDatabase raw(path_);
  for (const RuleColumn& column : rule_columns) {
    const auto set = [&](const std::string& value) {
      return raw.run("UPDATE rules SET " + std::string(column.name) + " = " + value + " WHERE RuleID = 1");
    };
    EXPECT_EQ(set(std::to_string(column.least - 1)), SQLITE_CONSTRAINT_CHECK) << column.name;
    EXPECT_EQ(set(std::to_string(column.greatest + 1)), SQLITE_CONSTRAINT_CHECK) << column.name;
    EXPECT_EQ(set("NULL"), SQLITE_CONSTRAINT_NOTNULL) << column.name;
    EXPECT_EQ(set("'many'"), SQLITE_CONSTRAINT_DATATYPE) << column.name;
    EXPECT_EQ(set(std::to_string(column.least)), SQLITE_OK) << column.name;
    EXPECT_EQ(set(std::to_string(column.greatest)), SQLITE_OK) << column.name;
  }
}

TEST_F(SqliteRuleStore, SchemaItselfKeepsNamesUniqueAndNumbersInRange) {
  open();
  RawDatabase raw(path_);
  EXPECT_EQ(raw.run("UPDATE rules SET RuleName = 'first' WHERE RuleID = 2"), SQLITE_CONSTRAINT_UNIQUE);
  EXPECT_EQ(raw.run("UPDATE rules SET RuleName = 'First' WHERE RuleID = 2"), SQLITE_OK);
  EXPECT_EQ(raw.run("UPDATE rules SET RuleName = ''"), SQLITE_CONSTRAINT_CHECK);
  EXPECT_EQ(raw.run("UPDATE rules SET RuleID = 0 WHERE RuleID = 1"), SQLITE_CONSTRAINT_CHECK);
  EXPECT_EQ(raw.run("UPDATE rules SET RuleID = 2147483648 WHERE RuleID = 1"), SQLITE_CONSTRAINT_CHECK);
  for (const char* value : {"SettingName = ''", "SettingID = 2147483648", "Months = 'HX1'", "LastTradingDay = 2",
                            "CalendarName = hex(zeroblob(128))", "Revision = 0"}) {
    EXPECT_EQ(raw.run("UPDATE symbol_source_settings SET " + std::string(value) + " WHERE SettingID = 1"),
              SQLITE_CONSTRAINT_CHECK)
        << value;
  }
  for (const char* value : {"CalendarName = ''", "FirstDay = '2027-01-01'", "FirstDay = 'day'", "LastDay = '20261231'",
                            "Weekend = 127", "ShippedVersion = -1"})
    EXPECT_EQ(raw.run("UPDATE calendars SET " + std::string(value)), SQLITE_CONSTRAINT_CHECK) << value;
  EXPECT_EQ(raw.run("UPDATE closed_days SET Day = '5'"), SQLITE_CONSTRAINT_CHECK);
}

TEST_F(SqliteRuleStore, SubscribersHearOfAChangeByAnotherProgramOnce) {
  const auto mine = open();
  const auto theirs = open();
  int notified = 0;
  const StoreSubscription subscription = mine->subscribe([&] { ++notified; });
  EXPECT_FALSE(mine->poll_for_changes());
  theirs->add_rule(sample_rule(L"theirs"));
  EXPECT_TRUE(mine->poll_for_changes());
  EXPECT_FALSE(mine->poll_for_changes());
  EXPECT_EQ(notified, 1);
  mine->add_rule(sample_rule(L"mine"));
  EXPECT_FALSE(mine->poll_for_changes());
  EXPECT_EQ(notified, 2);
}

TEST_F(SqliteRuleStore, ContentOfManyRulesAndSettingsComesBackWhole) {
  StoreContent many;
  const int count = test_support::repetitions(2000, 200);
  for (int i = 0; i < count; ++i) many.rules.push_back({.name = L"rule " + std::to_wstring(i), .roll_offset = i % 100});
  for (int i = 0; i < 5 * count; ++i)
    many.settings.push_back({L"setting " + std::to_wstring(i), L"rule " + std::to_wstring(i % count)});
  const auto store = open();
  store->replace_content(many);
  const StoreSnapshot now = snapshot_of(*store);
  ASSERT_EQ(now.rules.size(), many.rules.size());
  EXPECT_TRUE(std::ranges::equal(now.rules, many.rules, {}, &StoredRule::rule));
  EXPECT_TRUE(settings_of(*store) == many.settings);
}

}  // namespace
