#include <thread>

#include "OdbcError.h"
#include "ServerTest.h"
#include "WithinSeconds.h"

using namespace workbench;

namespace {

/// What the tables refuse of other programs.
class ServerConstraint : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    if (IsSkipped()) return;
    store_ = schema_->open({.first_content = sample_content()});
    other_.emplace(odbc::system_odbc(), schema_->options(), postgres().driver, std::chrono::seconds(10));
  }

  /// The state with which the server refuses that the first rule gets this name, as it stands in the table.
  std::string refused_name(const std::wstring& stored) const {
    try {
      other_->prepare(L"UPDATE rules SET RuleName = ? WHERE RuleID = 1").bind(1, stored).execute();
      return {};
    } catch (const odbc::OdbcError& error) {
      return error.state();
    }
  }

  /// Whether another session waits for a lock of `other_`'s, within ten seconds.
  bool is_waited_for() const {
    return test_support::within_seconds(10, [&] {
      odbc::OdbcStatement waits = other_->prepare(
          L"SELECT count(*) FROM pg_locks WHERE NOT granted AND pg_backend_pid() = ANY (pg_blocking_pids(pid))");
      waits.execute();
      return waits.fetch() && waits.integer(0) > 0;
    });
  }

  /// Runs a statement that differs in one part, each time with the state that belongs to the part; "" is success.
  void expect_states(const std::wstring& before, const std::vector<std::pair<std::wstring, std::string>>& states,
                     const std::wstring& after = L"") const {
    for (const auto& [part, state] : states)
      EXPECT_EQ(schema_->refused(before + part + after), state) << testing::PrintToString(before + part + after);
  }

  std::shared_ptr<RuleStore> store_;
  std::optional<odbc::OdbcConnection> other_;
};

TEST_F(ServerConstraint, ValuesOutsideTheirRangesAreRefused) {
  for (const RuleColumn& column : rule_columns) {
    const std::string name = column.name;
    const std::wstring set = L"UPDATE rules SET " + std::wstring(name.begin(), name.end()) + L" = ";
    EXPECT_EQ(schema_->refused(set + std::to_wstring(column.least - 1)), "23514") << name;
    EXPECT_EQ(schema_->refused(set + std::to_wstring(column.greatest + 1)), "23514") << name;
    EXPECT_EQ(schema_->refused(set + std::to_wstring(column.least)), "") << name;
    EXPECT_EQ(schema_->refused(set + std::to_wstring(column.greatest)), "") << name;
  }
}

TEST_F(ServerConstraint, SettingsThatMeanNothingAreRefused) {
  expect_states(L"UPDATE symbol_source_settings SET ", {{L"Months = 'HF'", "23514"},
                                                        {L"Months = 'A'", "23514"},
                                                        {L"Months = 'FGHJKMNQUVXZ'", ""},
                                                        {L"LastTradingDay = 2", "23514"},
                                                        {L"SettingName = ''", "23514"},
                                                        {L"RuleName = ''", ""},
                                                        {L"RuleName = repeat('x', 256)", "23514"},
                                                        {L"CalendarName = 'a/b'", "23514"},
                                                        {L"CalendarName = 'a\\'", "23514"},
                                                        {L"CalendarName = 'days.CSV'", "23514"},
                                                        {L"CalendarName = 'none'", ""},
                                                        {L"CalendarName = ''", ""}});
}

TEST_F(ServerConstraint, CalendarsThatMeanNothingAreRefused) {
  expect_states(L"UPDATE calendars SET ", {{L"Weekend = 127", "23514"},
                                           {L"LastDay = FirstDay - 1", "23514"},
                                           {L"FirstDay = '1899-12-31'", "23514"},
                                           {L"FirstDay = '1900-01-01'", ""},
                                           {L"LastDay = '2200-01-01'", "23514"},
                                           {L"LastDay = 'infinity'", "23514"},
                                           // A closed day would lie outside, or be no business day.
                                           {L"LastDay = '2026-05-03'", "23514"},
                                           {L"Weekend = 2", "23514"}});
  expect_states(L"INSERT INTO calendars VALUES (E'",
                {{L"", "23514"},
                 {L"a/b", "23514"},
                 {L"a\\b", "23514"},
                 {L"days.CSV", "23514"},
                 {L"days.ics", "23514"},
                 {L"a\u0009b", "23514"}},
                L"', '', '', '', '2026-01-01', '2026-01-01', 0, 0)");
}

TEST_F(ServerConstraint, ClosedDaysOutsideTheirCalendarAreRefused) {
  // The calendar's weekend is Friday and Saturday, its last day 2026-12-31.
  expect_states(L"INSERT INTO closed_days VALUES (",
                {{L"'exchange', '2026-01-02'", "23514"},
                 {L"'exchange', '2027-01-04'", "23514"},
                 {L"'exchange', '2026-01-04'", ""},
                 {L"'none', '2026-01-01'", "23503"},
                 {L"'exchange', '2026-01-01'", "23505"}},
                L", '')");
  EXPECT_EQ(schema_->refused(L"UPDATE closed_days SET Day = '1899-12-31'"), "23514");
}

TEST_F(ServerConstraint, NumberOfARuleIsTheServers) {
  EXPECT_EQ(schema_->refused(L"UPDATE rules SET RuleID = 0 WHERE RuleID = 1"), "428C9");
}

TEST_F(ServerConstraint, LengthsAreCountedInCodeUnits) {
  std::wstring pairs;
  for (int i = 0; i < 127; ++i) pairs += L"\xD83D\xDCC8";
  std::wstring escaped;
  for (int i = 0; i < 255; ++i) escaped += L"\\uD800";
  EXPECT_EQ(refused_name(L""), "23514");
  EXPECT_EQ(refused_name(std::wstring(255, L'\xFFFD')), "");
  EXPECT_EQ(refused_name(std::wstring(256, L'x')), "23514");
  EXPECT_EQ(refused_name(pairs + L"x"), "");
  EXPECT_EQ(refused_name(pairs + L"xx"), "23514");
  EXPECT_EQ(refused_name(escaped), "");
  EXPECT_EQ(refused_name(escaped + L"x"), "23514");
  EXPECT_EQ(refused_name(std::wstring(510, L'\\')), "");
  EXPECT_EQ(refused_name(std::wstring(512, L'\\')), "23514");
}

TEST_F(ServerConstraint, NamesStandInTheirEscapedForm) {
  for (const wchar_t* wrong : {L"\\", L"a\\", L"\\u000", L"\\u0041", L"\\u000a", L"\\n", L"a\tb", L"\x7F",
                               L"\\uD83D\\uDCC8", L"\\\\\\uD83D\\uDCC8", L"\\u005C"})
    EXPECT_EQ(refused_name(wrong), "23514") << testing::PrintToString(wrong);
  for (const wchar_t* right : {L"\\\\", L"\\u0000", L"\\u001F", L"\\u007F", L"\\uDCC8\\uD83D", L"\\uD83Dx",
                               L"\\\\uD83D\\uDCC8", L"\xD83D\xDCC8\\uDCC8", L"\x80\xFFFF"})
    EXPECT_EQ(refused_name(right), "") << testing::PrintToString(right);
}

TEST_F(ServerConstraint, NamesAreUniqueCodeUnitByCodeUnit) {
  store_->add_rule({.name = L"caf\u00E9"});
  EXPECT_EQ(refused_name(L"cafe\u0301"), "");
  EXPECT_EQ(refused_name(L"Caf\u00E9"), "");
  EXPECT_EQ(refused_name(L"caf\u00E9"), "23505");
}

TEST_F(ServerConstraint, UsedRuleIsNotDeletedAndSettingsFollowANewName) {
  EXPECT_EQ(schema_->refused(L"DELETE FROM rules WHERE RuleID = 1"), "23503");
  EXPECT_EQ(schema_->refused(L"DELETE FROM rules WHERE RuleID = 2"), "");
  const std::vector<StoredSetting> before = store_->load_settings();
  schema_->run(L"UPDATE rules SET RuleName = 'renamed' WHERE RuleID = 1");
  const std::vector<StoredSetting> after = store_->load_settings();
  EXPECT_EQ(after[0], (StoredSetting{before[0].number, 2, {L"copper", L"renamed"}}));
  EXPECT_EQ(after[1], before[1]);
}

TEST_F(ServerConstraint, NoProgramTruncatesWhatIsRecorded) {
  for (const wchar_t* table : {L"rules", L"symbol_source_settings", L"calendars CASCADE", L"closed_days"})
    EXPECT_EQ(schema_->refused(L"TRUNCATE " + std::wstring(table)), "42501") << testing::PrintToString(table);
}

TEST_F(ServerConstraint, EveryFunctionHasItsOwnSearchPath) {
  const std::wstring functions =
      L"FROM pg_proc WHERE pronamespace = CAST(current_schema() AS regnamespace) AND array_to_string(proconfig, ';') ";
  EXPECT_NE(schema_->text(L"SELECT count(*) " + functions + L"LIKE 'search_path=%, pg_temp'"), L"0");
  EXPECT_EQ(
      schema_->text(L"SELECT string_agg(proname, ' ') " + functions + L"LIKE 'search_path=%, pg_temp' IS NOT TRUE"),
      L"");
}

TEST_F(ServerConstraint, OtherProgramsLockTheStoreBeforeARow) {
  odbc::OdbcTransaction store(*other_);
  other_->execute(L"SELECT Changes FROM rule_store FOR UPDATE");
  std::string refused = "not ended";
  std::jthread program([&] { refused = schema_->refused(L"UPDATE rules SET RollOffset = 4 WHERE RuleID = 1"); });
  EXPECT_TRUE(is_waited_for());
  // A program that held the row would now be a deadlock.
  EXPECT_NO_THROW(other_->execute(L"UPDATE rules SET RollOffset = 3 WHERE RuleID = 1"));
  store.commit();
  program.join();
  EXPECT_EQ(refused, "");
}

TEST_F(ServerConstraint, RuleIsNotDeletedWhileAnotherProgramNamesIt) {
  odbc::OdbcTransaction naming(*other_);
  other_->execute(L"INSERT INTO symbol_source_settings (SettingName, RuleName) VALUES ('new', 'second')");
  std::string refused;
  std::jthread program([&] { refused = schema_->refused(L"DELETE FROM rules WHERE RuleName = 'second'"); });
  EXPECT_TRUE(is_waited_for());
  naming.commit();
  program.join();
  EXPECT_EQ(refused, "23503");
}

TEST_F(ServerConstraint, ChangeByAnotherProgramIsNotOverwritten) {
  const StoredRule read = store_->load_rules().front();
  const StoredSetting setting = store_->load_settings().front();
  schema_->run(L"UPDATE rules SET RollOffset = 3 WHERE RuleID = 1");
  schema_->run(L"UPDATE symbol_source_settings SET LastTradingDay = 1");
  EXPECT_EQ(refusal_kind([&] { store_->update_rule(read.number, read.rule, read.revision); }), StoreErrorKind::changed);
  EXPECT_EQ(refusal_kind([&] { store_->delete_setting(setting.number, setting.revision); }),
            StoreErrorKind::setting_changed);
  EXPECT_EQ(store_->load_rules().front().rule.roll_offset, 3);
}

TEST_F(ServerConstraint, WhatNoClientCouldHaveStoredIsDamage) {
  schema_->run(L"ALTER TABLE calendars DROP CONSTRAINT calendars_firstday_check");
  schema_->run(L"UPDATE calendars SET FirstDay = '0001-01-01'");
  EXPECT_EQ(refusal_kind([&] { store_->load_calendars(); }), StoreErrorKind::damaged);
  schema_->run(L"ALTER TABLE rules ALTER Weekday DROP NOT NULL, DROP CONSTRAINT rules_dayofmonth_check");
  for (const wchar_t* set : {L"Weekday = NULL", L"Weekday = 0, DayOfMonth = 32"}) {
    schema_->run(L"UPDATE rules SET " + std::wstring(set) + L" WHERE RuleID = 2");
    EXPECT_EQ(refusal_kind([&] { store_->load_rules(); }), StoreErrorKind::damaged) << testing::PrintToString(set);
    EXPECT_EQ(refusal_kind([&] { store_->try_load_rule(2); }), StoreErrorKind::damaged) << testing::PrintToString(set);
    EXPECT_TRUE(store_->try_load_rule(1));
  }
  schema_->run(L"UPDATE rules SET DayOfMonth = 31 WHERE RuleID = 2");
  EXPECT_EQ(store_->load_rules().size(), 2u);
  schema_->run(L"ALTER TABLE rules DROP CONSTRAINT rules_rulename_check");
  schema_->run(L"UPDATE rules SET RuleName = '\\' WHERE RuleID = 2");
  EXPECT_EQ(refusal_kind([&] { store_->load_rules(); }), StoreErrorKind::damaged);
  schema_->run(L"DROP TABLE symbol_source_settings");
  EXPECT_EQ(refusal_kind([&] { store_->load_settings(); }), StoreErrorKind::damaged);
}

}  // namespace
