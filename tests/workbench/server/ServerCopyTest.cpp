#include "ServerTest.h"
#include "SqliteRuleStore.h"
#include "TemporaryFolder.h"

using namespace workbench;
using Kind = StoreErrorKind;

namespace {

class ServerCopy : public ServerTest {
 protected:
  /// What a file holds that has been used for a while: more records and changes than one statement takes, and gaps.
  static StoreCopy used_store() {
    const test_support::TemporaryFolder folder;
    const auto file = open_sqlite_store(folder.path() / L"rules.db");
    RuleStore& store = *file;
    StoreContent content = sample_content();
    for (const std::wstring& name : awkward_names()) content.rules.push_back(sample_rule(name));
    for (int i = 0; i < 1200; ++i) content.rules.push_back(sample_rule(L"rule " + std::to_wstring(i)));
    for (int i = 0; i < 700; ++i) content.settings.push_back(sample_setting(L"same name", L"rule 5"));
    store.replace_content(content);
    store.update_rule(2, sample_rule(L"renamed"));
    store.delete_rule(1200);
    store.delete_rule(store.load_rules().back().number);
    store.delete_setting(store.load_settings().back().number);
    return store.copy();
  }

  std::unique_ptr<RuleStore> create(const StoreCopy& copy) const { return schema_->open({.copied = &copy}); }
};

TEST_F(ServerCopy, FileGoesToAServerAndBackUnchanged) {
  const StoreCopy copy = used_store();
  EXPECT_EQ(create(copy)->copy(), copy);
  const auto server = schema_->open();
  EXPECT_GT(copy.changes.size(), 5u);
  const StoreCopy back = server->copy();
  EXPECT_EQ(back, copy);
  const test_support::TemporaryFolder folder;
  EXPECT_EQ(open_sqlite_store(folder.path() / L"rules.db", {.copied = &back})->copy(), copy);
  EXPECT_EQ(server->load_changes(2).size(), 2u);
  EXPECT_EQ(server->add_rule(sample_rule(L"next")).number, copy.last_rule_number + 1);
  EXPECT_EQ(server->add_setting(sample_setting(L"next", L"")).number, copy.last_setting_number + 1);
}

TEST_F(ServerCopy, WhoChangedWhatGoesFromAServerToAFileAndToAnotherServer) {
  StoreCopy copy;
  {
    const auto server = schema_->open({.first_content = sample_content()});
    for (const std::wstring& name : awkward_names()) server->update_rule(2, {.name = name});
    server->import_records({{sample_rule(L"third"), {.name = L"first"}}});
    server->replace_calendars({sample_calendar("exchange"), sample_calendar("other")});
    server->delete_rule(2);
    // The copy has the change of another program, and not the one that never happened.
    schema_->run(L"UPDATE closed_days SET Reason = 'x'");
    schema_->run(L"INSERT INTO changes (ChangeID, Happened) VALUES (gen_random_uuid(), false)");
    copy = server->copy();
    ASSERT_EQ(copy.changes.size(), 1 + awkward_names().size() + 4);
    EXPECT_EQ(copy.changes[1].user, schema_->name());
    EXPECT_EQ(copy.changes.back().user, L"administrator");
    const std::vector<RuleChange> first = server->load_changes(1);
    const test_support::TemporaryFolder folder;
    const auto file = open_sqlite_store(folder.path() / L"rules.db", {.copied = &copy});
    EXPECT_EQ(file->copy(), copy);
    EXPECT_EQ(file->load_changes(1), first);
    EXPECT_EQ(file->load_changes(2), server->load_changes(2));
    EXPECT_EQ(first.size(), 2u);
  }
  schema_.emplace();
  const auto other = create(copy);
  EXPECT_EQ(other->copy(), copy);
  other->delete_rule(3);
  EXPECT_EQ(other->load_changes(3).size(), 2u) << "its own changes follow";
}

TEST_F(ServerCopy, CopyThatGaveNoNumberYetBeginsWithTheFirst) {
  const auto server = create({});
  EXPECT_EQ(server->copy(), StoreCopy());
  EXPECT_EQ(server->add_rule(sample_rule(L"first")).number, 1);
  EXPECT_EQ(server->add_setting(sample_setting(L"first", L"")).number, 1);
}

TEST_F(ServerCopy, CopyReplacesNoStoreWhateverThatHolds) {
  create({});
  EXPECT_EQ(refusal_kind([&] { create(used_store()); }), Kind::exists);
  EXPECT_EQ(schema_->open()->copy(), StoreCopy());
}

TEST_F(ServerCopy, RefusedCopyLeavesTheSchemaEmpty) {
  StoreCopy copy = used_store();
  copy.rules[1000].rule.name = copy.rules[0].rule.name;
  const auto error = refusal([&] { create(copy); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind(), Kind::duplicate_name);
  EXPECT_EQ(error->subject(), copy.rules[0].rule.name);
  EXPECT_EQ(refusal_kind([&] { schema_->open({.may_create = false}); }), Kind::missing);
}

TEST_F(ServerCopy, CopyIsOfOneMoment) {
  const auto server = create(used_store());
  const auto other = schema_->open();
  const StoreCopy before = server->copy();
  other->add_rule(sample_rule(L"meanwhile"));
  EXPECT_EQ(server->copy().rules.size(), before.rules.size() + 1) << "the transaction of the first has ended";
  server->add_rule(sample_rule(L"afterwards"));
}

}  // namespace
