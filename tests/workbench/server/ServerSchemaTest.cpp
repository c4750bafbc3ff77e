#include <atomic>
#include <thread>

#include "ServerTest.h"

using namespace workbench;
using Kind = StoreErrorKind;

namespace {

class ServerSchema : public ServerTest {
 protected:
  std::optional<Kind> refused() const {
    return refusal_kind([&] { schema_->open(); });
  }
};

TEST_F(ServerSchema, NewStoreGetsItsContentOnceAndIsOpenedAgain) {
  schema_->open({.first_content = sample_content()});
  const auto store = schema_->open({.first_content = {{sample_rule(L"other")}, {}}, .may_create = false});
  const StoreSnapshot present = snapshot_of(*store);
  ASSERT_EQ(present.rules.size(), 2u);
  EXPECT_EQ(present.rules[0], (StoredRule{1, 1, sample_content().rules[0]}));
  EXPECT_EQ(settings_of(*store), sample_content().settings);
  EXPECT_EQ(present.calendars, sample_content().calendars);
  EXPECT_EQ(schema_->text(L"SELECT tableowner FROM pg_tables WHERE tablename = 'rules' AND schemaname = '" +
                          schema_->name() + L"'"),
            schema_->name());
}

TEST_F(ServerSchema, StoreIsMissingWhereNoneMayBeCreated) {
  EXPECT_EQ(refusal_kind([&] { schema_->open({.may_create = false}); }), Kind::missing);
  EXPECT_EQ(schema_->tables(), L"");
}

TEST_F(ServerSchema, FirstContentThatIsRefusedLeavesTheSchemaEmpty) {
  EXPECT_EQ(refusal_kind([&] { schema_->open({.first_content = {{{}}, {}}}); }), Kind::invalid_value);
  EXPECT_EQ(schema_->tables(), L"");
}

TEST_F(ServerSchema, WorkbenchesThatStartTogetherCreateTheStoreOnce) {
  std::vector<std::jthread> workbenches;
  std::atomic<int> opened = 0;
  for (int i = 0; i < 8; ++i)
    workbenches.emplace_back([&] {
      try {
        schema_->open({.first_content = sample_content()});
        ++opened;
      } catch (const StoreError& error) {
        ADD_FAILURE() << error.what();
      }
    });
  workbenches.clear();
  EXPECT_EQ(opened, 8);
  EXPECT_EQ(schema_->open()->load_rules().size(), 2u);
}

TEST_F(ServerSchema, TablesOfOurNamesWithoutOurVersionAreForeign) {
  schema_->run(L"CREATE TABLE calendars (x integer)");
  EXPECT_EQ(refused(), Kind::foreign);
  EXPECT_EQ(schema_->tables(), L"calendars.x");
}

TEST_F(ServerSchema, VersionOfAnotherProgramIsForeign) {
  schema_->open();
  schema_->run(L"UPDATE rule_store SET Application = 1");
  EXPECT_EQ(refused(), Kind::foreign);
  schema_->run(L"UPDATE rule_store SET Application = 2053391698, Version = 3");
  EXPECT_EQ(refused(), Kind::foreign);
  schema_->run(L"DELETE FROM rule_store");
  EXPECT_EQ(refused(), Kind::foreign);
  schema_->run(L"DROP TABLE rule_store; CREATE TABLE rule_store (x integer)");
  schema_->run(L"GRANT SELECT ON rule_store TO PUBLIC");
  EXPECT_EQ(refused(), Kind::foreign);
}

TEST_F(ServerSchema, OlderVersionIsBroughtToThePresentOnce) {
  schema_->open({.first_content = sample_content()});
  const std::wstring present = schema_->tables();
  schema_->make_older();
  std::vector<std::jthread> workbenches;
  for (int i = 0; i < 4; ++i)
    workbenches.emplace_back([&] { EXPECT_EQ(refusal_kind([&] { schema_->open(); }), std::nullopt); });
  workbenches.clear();
  EXPECT_EQ(schema_->tables(), present);
  const auto store = schema_->open();
  EXPECT_TRUE(store->load_changes(1).empty());
  store->update_rule(1, sample_rule(L"renamed"));
  EXPECT_EQ(store->load_changes(1).size(), 1u);
}

TEST_F(ServerSchema, NewerVersionIsRefusedAndLeftAsItIs) {
  schema_->open({.first_content = sample_content()});
  schema_->run(L"UPDATE rule_store SET Version = 1000");
  EXPECT_EQ(refused(), Kind::newer);
  EXPECT_EQ(schema_->text(L"SELECT count(*) FROM rules"), L"2");
  EXPECT_EQ(schema_->text(L"SELECT Version FROM rule_store"), L"1000");
}

TEST_F(ServerSchema, DatabaseOfAnotherEncodingIsForeign) {
  const std::wstring database = schema_->name() + L"_latin";
  schema_->run(L"CREATE DATABASE " + database + L" ENCODING 'LATIN1' LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0");
  odbc::ConnectionString options = schema_->options();
  options.set(L"Database", database);
  EXPECT_EQ(refusal_kind([&] { open_server_store(options); }), Kind::foreign);
}

TEST_F(ServerSchema, UserWithoutASchemaFindsNoStore) {
  schema_->run(L"ALTER ROLE " + schema_->name() + L" SET search_path = nowhere");
  EXPECT_EQ(refused(), Kind::unavailable);
}

TEST_F(ServerSchema, NameOfTheSchemaStaysAName) {
  schema_->run(L"CREATE SCHEMA \"a b\"\"; DROP\" AUTHORIZATION " + schema_->name());
  schema_->run(L"ALTER ROLE " + schema_->name() + L" SET search_path = \"a b\"\"; DROP\"");
  const auto store = schema_->open({.first_content = sample_content()});
  store->update_rule(1, sample_rule(L"renamed"));
  EXPECT_EQ(store->load_settings()[0].setting.rule_name, L"renamed");
  schema_->run(L"DROP SCHEMA \"a b\"\"; DROP\" CASCADE");
}

}  // namespace
