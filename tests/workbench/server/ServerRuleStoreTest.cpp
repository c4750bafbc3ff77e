#include "FaultyOdbc.h"
#include "ServerTest.h"

using namespace workbench;
using Kind = StoreErrorKind;

namespace {

class ServerRuleStore : public ServerTest {
 protected:
  static std::vector<Rule> many_rules(int count) {
    std::vector<Rule> rules;
    for (int i = 0; i < count; ++i) rules.push_back(sample_rule(L"rule " + std::to_wstring(i)));
    return rules;
  }

  /// Ends every connection of the store's user, as an administrator may.
  void cut_connections() const {
    schema_->text(L"SELECT bool_and(pg_terminate_backend(pid, 5000)) FROM pg_stat_activity WHERE usename = '" +
                  schema_->name() + L"'");
  }
};

TEST_F(ServerRuleStore, ChangesOfAnotherWorkbenchAreSeenOnce) {
  const auto mine = schema_->open({.first_content = sample_content()});
  const auto theirs = schema_->open();
  int notified = 0;
  const StoreSubscription subscription = mine->subscribe([&] { ++notified; });
  EXPECT_FALSE(mine->poll_for_changes());
  theirs->add_rule(sample_rule(L"third"));
  EXPECT_TRUE(mine->poll_for_changes());
  EXPECT_FALSE(mine->poll_for_changes());
  EXPECT_EQ(notified, 1);
  theirs->replace_calendars({sample_calendar("other")});
  EXPECT_TRUE(mine->poll_for_changes());
  EXPECT_EQ(theirs->load_rules(), mine->load_rules());
  EXPECT_FALSE(theirs->poll_for_changes()) << "its own changes are no news";
}

TEST_F(ServerRuleStore, ChangeOfAnotherWorkbenchIsSeenThoughAnOwnOneFollowed) {
  const auto mine = schema_->open();
  const auto theirs = schema_->open();
  theirs->add_rule(sample_rule(L"theirs"));
  mine->add_rule(sample_rule(L"mine"));
  EXPECT_TRUE(mine->poll_for_changes());
  EXPECT_FALSE(mine->poll_for_changes());
}

TEST_F(ServerRuleStore, ChangeByAnotherProgramIsSeen) {
  const auto store = schema_->open({.first_content = sample_content()});
  for (const wchar_t* sql : {L"UPDATE rules SET RollOffset = 1", L"DELETE FROM symbol_source_settings",
                             L"UPDATE calendars SET Title = 'x'", L"DELETE FROM closed_days"}) {
    schema_->run(sql);
    EXPECT_TRUE(store->poll_for_changes()) << testing::PrintToString(sql);
    EXPECT_FALSE(store->poll_for_changes());
  }
}

TEST_F(ServerRuleStore, ChangesByOtherProgramsAreRecordedOnceForEachTransaction) {
  const auto store = schema_->open({.first_content = sample_content()});
  const std::wstring count = L"SELECT count(*) FROM changes";
  const int before = std::stoi(schema_->text(count));
  schema_->run(
      L"BEGIN; UPDATE rules SET RollOffset = 1; UPDATE calendars SET Title = 'x'; DELETE FROM closed_days; COMMIT");
  EXPECT_EQ(std::stoi(schema_->text(count)), before + 1);
  EXPECT_EQ(store->load_changes(2).back().old_rule->roll_offset, 99);
  EXPECT_EQ(store->load_changes(2).back().new_rule->roll_offset, 1);
  EXPECT_EQ(schema_->text(L"SELECT jsonb_array_length(OldRow) FROM changed_rows WHERE TableName = 'closed_days' AND "
                          L"NewRow IS NULL"),
            L"2");
  store->add_rule(sample_rule(L"next"));
  EXPECT_EQ(std::stoi(schema_->text(count)), before + 2);
}

TEST_F(ServerRuleStore, RefusedChangeIsNotTold) {
  const auto mine = schema_->open({.first_content = sample_content()});
  const auto theirs = schema_->open();
  EXPECT_EQ(refusal_kind([&] { theirs->add_rule(sample_rule(L"first")); }), Kind::duplicate_name);
  EXPECT_EQ(refusal_kind([&] { theirs->delete_rule(1); }), Kind::in_use);
  EXPECT_FALSE(mine->poll_for_changes());
}

TEST_F(ServerRuleStore, WorkbenchThatIsHeldUpForTooLongIsRefused) {
  const auto store = schema_->open({.first_content = sample_content()});
  schema_->run(L"BEGIN; SELECT * FROM rule_store FOR UPDATE");
  const ULONGLONG start = GetTickCount64();
  EXPECT_EQ(refusal_kind([&] { store->add_rule(sample_rule(L"new")); }), Kind::locked);
  EXPECT_GE(GetTickCount64() - start, 2'500u);
  EXPECT_EQ(store->load_rules().size(), 2u) << "reading does not wait";
  schema_->run(L"ROLLBACK");
  store->add_rule(sample_rule(L"new"));
  EXPECT_EQ(store->load_rules().size(), 3u);
}

TEST_F(ServerRuleStore, EachSessionSetsWhatTheServersDefaultsMustNotChange) {
  const auto mine = schema_->open();
  mine->add_rule(sample_rule(L"before"));
  for (const wchar_t* setting : {L"synchronous_commit = off", L"default_transaction_isolation = 'serializable'",
                                 L"lock_timeout = 0", L"DateStyle = 'German'", L"standard_conforming_strings = off"})
    schema_->run(L"ALTER ROLE " + schema_->name() + L" SET " + setting);
  schema_->run(
      L"CREATE TABLE noted (synchronous text, isolation text, lock_limit text); GRANT INSERT ON noted TO PUBLIC; "
      L"CREATE FUNCTION note() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN INSERT INTO noted VALUES "
      L"(current_setting('synchronous_commit'), current_setting('transaction_isolation'), "
      L"current_setting('lock_timeout')); RETURN NULL; END $$; "
      L"CREATE TRIGGER note AFTER INSERT ON rules FOR EACH STATEMENT EXECUTE FUNCTION note()");
  const auto noted = [&] {
    return schema_->text(
        L"SELECT string_agg(DISTINCT synchronous || ', ' || isolation || ', ' || lock_limit, '; ') FROM noted");
  };
  const auto theirs = schema_->open();
  theirs->add_rule(sample_rule(L"of a new store"));
  EXPECT_EQ(noted(), L"on, read committed, 3s");
  theirs->replace_calendars({sample_calendar("days")});
  EXPECT_EQ(theirs->load_calendars(), std::vector{sample_calendar("days")});
  cut_connections();
  EXPECT_EQ(refusal_kind([&] { mine->load_rules(); }), Kind::connection_lost);
  schema_->run(L"DELETE FROM noted");
  mine->add_rule(sample_rule(L"over a new connection"));
  EXPECT_EQ(noted(), L"on, read committed, 3s");
}

TEST_F(ServerRuleStore, WorkGoesOnAfterALostConnection) {
  const auto store = schema_->open({.first_content = sample_content()});
  cut_connections();
  EXPECT_EQ(refusal_kind([&] { store->load_rules(); }), Kind::connection_lost);
  EXPECT_EQ(store->load_rules().size(), 2u);
  cut_connections();
  EXPECT_EQ(refusal_kind([&] { store->add_rule(sample_rule(L"new")); }), Kind::connection_lost);
  EXPECT_EQ(store->load_rules().size(), 2u);
  const auto cut_meanwhile = [&](std::size_t, std::size_t) {
    cut_connections();
    return true;
  };
  EXPECT_EQ(refusal_kind([&] { store->import_records({many_rules(2)}, cut_meanwhile); }), Kind::connection_lost);
  EXPECT_EQ(store->load_rules().size(), 2u);
  store->add_rule(sample_rule(L"new"));
  EXPECT_EQ(store->load_rules().size(), 3u);
}

TEST_F(ServerRuleStore, ServerThatRefusesTheUserSaysSoWithoutThePassword) {
  odbc::ConnectionString options = schema_->options();
  options.set(L"Pwd", L"marker");
  const auto error = refusal([&] { open_server_store(options); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind(), Kind::login_refused);
  EXPECT_THAT(error->what(), testing::Not(testing::HasSubstr("marker")));
  EXPECT_EQ(error->subject(), describe_server_store(options));
  EXPECT_EQ(error->subject().find(L"marker"), std::wstring::npos);
}

TEST_F(ServerRuleStore, ImportIsOneRoundTripPerBatch) {
  test_support::FaultyOdbc odbc(odbc::system_odbc());
  const auto store = schema_->open({.api = &odbc.api()});
  const auto calls_of_import = [&](int count) {
    odbc.fail_call(0, "");
    store->import_records({many_rules(count)});
    return odbc.calls();
  };
  const std::size_t one = calls_of_import(1);
  EXPECT_EQ(calls_of_import(500), one);
  EXPECT_LE(calls_of_import(5000), one + std::size_t{9} * 4);
  EXPECT_EQ(store->load_rules().size(), 5000u);
}

TEST_F(ServerRuleStore, ImportThatTheServerTakesForADuplicateNamesTheRule) {
  const auto store = schema_->open({.first_content = sample_content()});
  const std::vector<Rule> imported{sample_rule(L"a"), sample_rule(L"b"), sample_rule(L"b)\\x")};
  const auto subject_of_import = [&](const std::vector<Rule>& rules) {
    const auto error = refusal([&] { store->import_records({rules}); });
    return error && error->kind() == Kind::duplicate_name ? error->subject() : L"not refused";
  };
  // As a program that another one overtakes meanwhile would see it.
  schema_->run(
      L"CREATE FUNCTION overtake() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN IF NEW.RuleName LIKE 'b)%' THEN "
      L"NEW.RuleName := 'first'; END IF; RETURN NEW; END $$; "
      L"CREATE TRIGGER overtake BEFORE INSERT ON rules FOR EACH ROW EXECUTE FUNCTION overtake()");
  EXPECT_EQ(subject_of_import(imported), L"") << "the name is none of these";
  EXPECT_EQ(subject_of_import({imported[2]}), imported[2].name);
  schema_->run(
      L"DROP TRIGGER overtake ON rules; CREATE FUNCTION insert_twice() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
      L"IF NEW.RuleName LIKE 'b)%' AND pg_trigger_depth() = 1 THEN INSERT INTO rules (RuleName, RollOffset, DayType, "
      L"DayMode, DayOfMonth, DayMonth, WeekOrdinal, Weekday, WeekdayMonth, MoveToNextTradingDay) VALUES (NEW.RuleName, "
      L"0, 0, 0, 1, 1, 1, 1, 1, 0); END IF; RETURN NEW; END $$; "
      L"CREATE TRIGGER insert_twice BEFORE INSERT ON rules FOR EACH ROW EXECUTE FUNCTION insert_twice()");
  EXPECT_EQ(subject_of_import(imported), imported[2].name);
  EXPECT_EQ(store->load_rules().size(), 2u);
}

TEST_F(ServerRuleStore, RulesOfOneNameInAnImportFollowEachOther) {
  const auto store = schema_->open();
  store->import_records({{sample_rule(L"twice"), {.name = L"other"}, {.name = L"twice"}, sample_rule(L"last")}});
  EXPECT_EQ(
      store->load_rules(),
      (std::vector<StoredRule>{{1, 2, {.name = L"twice"}}, {2, 1, {.name = L"other"}}, {3, 1, sample_rule(L"last")}}));
}

TEST_F(ServerRuleStore, NamesStandInTheTablesAsTheyArePrinted) {
  const auto store = schema_->open();
  store->add_rule(sample_rule(std::wstring(L"a\0\t\\\xD800", 5)));
  EXPECT_EQ(schema_->text(L"SELECT RuleName FROM rules"), L"a\\u0000\\u0009\\\\\\uD800");
}

}  // namespace
