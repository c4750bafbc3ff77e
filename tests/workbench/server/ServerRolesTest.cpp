#include "OdbcError.h"
#include "ServerTest.h"
#include "TemporaryFolder.h"
#include "TextEncoding.h"

using namespace workbench;
using Kind = StoreErrorKind;

namespace {

/// A database of its own in which an administrator has run the file of roles, twice.
class ServerRoles : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    if (IsSkipped()) return;
    schema_->run(L"CREATE DATABASE " + schema_->name() + L" TEMPLATE template0");
    const odbc::OdbcConnection administrator = connect(odbc::ConnectionString(*test_support::test_server()));
    const std::wstring roles = base::from_utf8(test_support::read_bytes(ZD_ROLES_FILE));
    ASSERT_FALSE(roles.empty());
    administrator.execute(roles);
    administrator.execute(roles);
    for (const wchar_t* role : {L"owner", L"editor", L"reader"})
      administrator.execute(L"CREATE ROLE " + user(role) + L" LOGIN PASSWORD 'password' IN ROLE rule_" + role);
  }

  std::wstring user(const std::wstring& role) const { return schema_->name() + L"_" + role; }

  odbc::ConnectionString in_database(odbc::ConnectionString options) const {
    options.set(L"Database", schema_->name());
    return options;
  }

  odbc::OdbcConnection connect(const odbc::ConnectionString& options) const {
    return {odbc::system_odbc(), in_database(options), postgres().driver, std::chrono::seconds(10)};
  }

  std::unique_ptr<RuleStore> open_as(const std::wstring& role) const {
    return open_server_store(in_database(TestSchema::options_as(user(role))), {.first_content = sample_content()});
  }
};

TEST_F(ServerRoles, OnlyTheOwnerCreatesTheStore) {
  EXPECT_EQ(refusal_kind([&] { open_as(L"reader"); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { open_as(L"editor"); }), Kind::read_only);
  EXPECT_EQ(open_as(L"owner")->load_rules().size(), 2u);
}

TEST_F(ServerRoles, EditorChangesEverythingButTheTables) {
  open_as(L"owner");
  const auto store = open_as(L"editor");
  const long number = store->add_rule(sample_rule(L"third")).number;
  store->update_rule(number, sample_rule(L"fourth"));
  store->delete_rule(number);
  store->delete_setting(store->add_setting({L"x", L"y"}).number);
  store->import_records({{sample_rule(L"fifth")}, std::vector{sample_setting(L"z", L"fifth")}});
  store->replace_calendars({sample_calendar("other")});
  store->replace_content(sample_content());
  EXPECT_EQ(settings_of(*store), sample_content().settings);
  const odbc::OdbcConnection editor = connect(TestSchema::options_as(user(L"editor")));
  for (const wchar_t* sql :
       {L"UPDATE rule_store SET Version = 3", L"UPDATE rule_store SET Changes = 0", L"DELETE FROM rule_store",
        L"TRUNCATE rules", L"INSERT INTO rule_store (Application, Version) VALUES (1, 1)", L"DROP TABLE rules",
        L"CREATE TABLE more (x integer)", L"UPDATE changes SET UserName = 'x'", L"DELETE FROM changed_rows",
        L"TRUNCATE changes CASCADE",
        L"INSERT INTO changed_rows (ChangeID, TableName, RowKey) VALUES (gen_random_uuid(), '', '')",
        L"SELECT present_change()"}) {
    try {
      editor.execute(sql);
      ADD_FAILURE() << testing::PrintToString(sql);
    } catch (const odbc::OdbcError& error) {
      EXPECT_EQ(error.state(), "42501") << error.what();
    }
  }
}

TEST_F(ServerRoles, EditorChangesUnderTheirOwnNameOnly) {
  open_as(L"owner");
  const odbc::OdbcConnection editor = connect(TestSchema::options_as(user(L"editor")));
  editor.execute(
      L"BEGIN; INSERT INTO changes (ChangeID, UserName, ChangedAt) VALUES (CAST(set_config('rule_store.change', "
      L"'00000000000000000000000000000001', true) AS uuid), 'somebody else', '2001-01-01'); "
      L"UPDATE rules SET RollOffset = 7 WHERE RuleID = 1; COMMIT");
  const RuleChange change = open_as(L"reader")->load_changes(1).back();
  EXPECT_EQ(change.user, user(L"editor"));
  EXPECT_EQ(change.time.substr(0, 10), present_time().substr(0, 10));
  EXPECT_EQ(change.new_rule->roll_offset, 7);
  // A user cannot record a change under the id of another user's change.
  open_as(L"owner")->update_rule(1, sample_rule(L"by the owner"));
  editor.execute(
      L"SELECT set_config('rule_store.change', (SELECT CAST(ChangeID AS text) FROM changes ORDER BY ChangeNumber DESC "
      L"LIMIT 1), false); UPDATE rules SET RollOffset = 8 WHERE RuleID = 1");
  const std::vector<RuleChange> changes = open_as(L"reader")->load_changes(1);
  EXPECT_EQ(changes[changes.size() - 2].user, user(L"owner"));
  EXPECT_EQ(changes.back().user, user(L"editor"));
  EXPECT_EQ(changes.back().new_rule->roll_offset, 8);
}

TEST_F(ServerRoles, EditorForgesNoRecordThroughATriggerOfTheirOwn) {
  open_as(L"owner")->update_rule(1, sample_rule(L"by the owner"));
  const odbc::OdbcConnection editor = connect(TestSchema::options_as(user(L"editor")));
  const auto refused = [&](const wchar_t* sql) -> std::string {
    try {
      editor.execute(sql);
      return {};
    } catch (const odbc::OdbcError& error) {
      return error.state();
    }
  };
  editor.execute(
      L"CREATE TEMP TABLE rules (RuleID integer); CREATE FUNCTION pg_temp.forge() RETURNS trigger LANGUAGE plpgsql AS "
      L"$$ BEGIN INSERT INTO rules.changed_rows (ChangeID, TableName, RowKey, NewRow) SELECT ChangeID, 'rules', '1', "
      L"'{}' FROM rules.changes LIMIT 1; RETURN NEW; END $$; CREATE TRIGGER forge AFTER INSERT ON pg_temp.rules "
      L"FOR EACH ROW EXECUTE FUNCTION pg_temp.forge()");
  EXPECT_EQ(refused(L"INSERT INTO pg_temp.rules VALUES (1)"), "42501");
  for (const wchar_t* function : {L"record_change('ruleid')", L"record_closed_days('new')", L"count_change()"}) {
    const std::wstring sql = L"CREATE TRIGGER forge AFTER INSERT ON pg_temp.rules FOR EACH ROW EXECUTE FUNCTION rules.";
    EXPECT_EQ(refused((sql + function).c_str()), "42501") << testing::PrintToString(function);
  }
}

TEST_F(ServerRoles, OnlyTheOwnerBringsAnOldStoreToThePresentVersion) {
  open_as(L"owner");
  const odbc::OdbcConnection owner = connect(TestSchema::options_as(user(L"owner")));
  owner.execute(
      L"SET ROLE rule_owner; DROP TABLE changed_rows, changes CASCADE; DROP FUNCTION sign_change, present_change, "
      L"record_change, record_closed_days CASCADE; UPDATE rule_store SET Version = 4");
  EXPECT_EQ(refusal_kind([&] { open_as(L"reader"); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { open_as(L"editor"); }), Kind::read_only);
  EXPECT_EQ(open_as(L"owner")->load_rules().size(), 2u);
  EXPECT_EQ(open_as(L"reader")->load_rules().size(), 2u);
  open_as(L"editor")->delete_rule(2);
}

TEST_F(ServerRoles, ReaderReadsAndEachChangeIsRefused) {
  const auto owners = open_as(L"owner");
  const auto store = open_as(L"reader");
  const StoreSnapshot before = snapshot_of(*store);
  EXPECT_EQ(before.rules.size(), 2u);
  const Rule rule = sample_rule(L"new");
  EXPECT_EQ(refusal_kind([&] { store->add_rule(rule); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->update_rule(1, rule); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->delete_rule(2); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->replace_settings({}); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->replace_calendars({}); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->import_records({{rule}}); }), Kind::read_only);
  EXPECT_EQ(refusal_kind([&] { store->replace_content({}); }), Kind::read_only);
  EXPECT_EQ(snapshot_of(*store), before);
  EXPECT_EQ(store->copy(), owners->copy());
  EXPECT_EQ(open_as(L"editor")->copy(), owners->copy());
  owners->add_rule(rule);
  EXPECT_TRUE(store->poll_for_changes());
  EXPECT_EQ(store->load_rules().size(), 3u);
}

}  // namespace
