#include "CuttingProxy.h"
#include "ServerChanges.h"
#include "ServerTest.h"
#include "StoreThread.h"
#include "WithinSeconds.h"

using namespace workbench;
using Cut = CuttingProxy::Cut;
using Kind = StoreErrorKind;
using test_support::within_seconds;

namespace {

/// A store whose connection to a real server can be cut.
class CutConnection : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    if (IsSkipped()) return;
    odbc::ConnectionString options = schema_->options();
    proxy_.emplace(std::stoi(*options.find(L"Port")));
    options.set(L"Port", std::to_wstring(proxy_->port()));
    control_ = schema_->open({.first_content = sample_content()});
    store_ = open_server_store(options, {.time_limit = std::chrono::seconds(6)});
  }

  static bool nothing_is_abandoned() {
    return within_seconds(10, [] { return abandoned_connections() == 0; });
  }

  /// Stops a process of the server until it is destroyed: a stopped one would keep the server from ending.
  class ScopedStop {
   public:
    ScopedStop(const TestSchema& schema, std::wstring process) : schema_(schema), process_(std::move(process)) {
      schema_.run(signal(L"STOP", process_));
    }
    ~ScopedStop() { EXPECT_EQ(schema_.refused(signal(L"CONT", process_)), ""); }
    ScopedStop(const ScopedStop&) = delete;
    ScopedStop& operator=(const ScopedStop&) = delete;

   private:
    const TestSchema& schema_;
    std::wstring process_;
  };

  /// The server's process for the store's connection, which must be the only one of its user and have nothing to do:
  /// one that is stopped in the middle of something may keep the others.
  std::wstring process_of_store() {
    control_.reset();
    const std::wstring mine = L" FROM pg_stat_activity WHERE usename = '" + schema_->name() + L"'";
    EXPECT_TRUE(
        within_seconds(20, [&] { return schema_->text(L"SELECT count(*) || ' ' || min(state)" + mine) == L"1 idle"; }));
    return schema_->text(L"SELECT pid" + mine);
  }

  static std::wstring signal(const std::wstring& name, const std::wstring& process) {
    return L"COPY (SELECT 1 WHERE false) TO PROGRAM 'kill -" + name + L' ' + process + L"'";
  }

  std::vector<std::wstring> names() const {
    std::vector<std::wstring> names;
    for (const StoredRule& stored : control_->load_rules()) names.push_back(stored.rule.name);
    return names;
  }

  std::optional<CuttingProxy> proxy_;
  std::shared_ptr<RuleStore> control_;
  std::shared_ptr<RuleStore> store_;
};

TEST_F(CutConnection, CommitThatTheServerDoesNotGetChangesNothing) {
  proxy_->cut_at_commit(Cut::before_commit);
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(L"new")); }), Kind::connection_lost);
  EXPECT_EQ(names(), (std::vector<std::wstring>{L"first", L"second"}));
  store_->add_rule(sample_rule(L"new"));
  EXPECT_EQ(names().size(), 3u);
}

TEST_F(CutConnection, ChangeWhoseAcknowledgementIsLostIsFoundOverANewConnection) {
  proxy_->cut_at_commit(Cut::after_commit);
  const StoredRule added = store_->add_rule(sample_rule(L"new"));
  EXPECT_EQ(control_->try_load_rule(added.number), added);
  proxy_->cut_at_commit(Cut::after_commit);
  const StoredRule updated = store_->update_rule(added.number, sample_rule(L"renamed"), added.revision);
  EXPECT_EQ(control_->try_load_rule(added.number), updated);
  EXPECT_EQ(control_->load_changes(added.number).size(), 2u);
  EXPECT_FALSE(store_->poll_for_changes()) << "its own changes are no news";
}

TEST_F(CutConnection, ChangeIsUncertainUntilTheServerCanBeAsked) {
  for (const Cut cut : {Cut::before_commit, Cut::after_commit}) {
    const std::wstring name = L"new " + std::to_wstring(static_cast<int>(cut));
    const std::size_t before = names().size();
    proxy_->cut_at_commit(cut);
    proxy_->refuse_connections(true);
    const auto error = refusal([&] { store_->add_rule(sample_rule(name)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::uncertain);
    EXPECT_EQ(refusal_kind([&] { store_->load_rules(); }), Kind::unreachable);
    proxy_->refuse_connections(false);
    EXPECT_EQ(store_->load_rules().size(), before + (cut == Cut::after_commit ? 1 : 0));
    // The user enters it again.
    const auto again = refusal_kind([&] { store_->add_rule(sample_rule(name)); });
    EXPECT_EQ(again, cut == Cut::after_commit ? std::optional(Kind::duplicate_name) : std::nullopt);
    EXPECT_EQ(names().size(), before + 1);
  }
}

TEST_F(CutConnection, IdOfAChangeIsTakenOnceByTheChangeOrByTheQuestion) {
  ServerSession mine(odbc::system_odbc(), schema_->options(), postgres());
  ServerSession other(odbc::system_odbc(), schema_->options(), postgres());
  const auto settle = [&](const std::wstring& id) { return other.call([&] { return settle_change(other, id); }); };
  const std::wstring happening = new_change_id();
  mine.call([&] {
    odbc::OdbcTransaction transaction(mine.connection());
    insert_change(mine, happening);
    EXPECT_EQ(refusal_kind([&] { settle(happening); }), Kind::locked) << "it is still under way";
    transaction.commit();
  });
  EXPECT_TRUE(settle(happening));
  EXPECT_TRUE(settle(happening));
  const std::wstring late = new_change_id();
  EXPECT_FALSE(settle(late));
  EXPECT_FALSE(settle(late)) << "the question itself is no change";
  EXPECT_TRUE(refusal([&] { mine.call([&] { insert_change(mine, late); }); }));
}

TEST_F(CutConnection, SilentServerIsGivenUpAndTheChangeIsFoundOverANewConnection) {
  proxy_->cut_at_commit(Cut::silence_after_commit);
  const StoredRule added = store_->add_rule(sample_rule(L"new"));
  EXPECT_EQ(control_->try_load_rule(added.number), added);
  EXPECT_EQ(abandoned_connections(), 1);
  EXPECT_EQ(store_->load_rules().size(), 3u);
  proxy_->end_silence();
  EXPECT_TRUE(nothing_is_abandoned());
  EXPECT_EQ(names().size(), 3u);
}

TEST_F(CutConnection, ChangeThatASilentConnectionStillHoldsIsUncertainAndDoesNotHappenLater) {
  proxy_->cut_at_commit(Cut::silence_before_commit);
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(L"new")); }), Kind::uncertain);
  EXPECT_EQ(store_->load_rules().size(), 2u) << "reading does not wait";
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(L"new")); }), Kind::locked);
  proxy_->end_silence();
  EXPECT_TRUE(nothing_is_abandoned());
  EXPECT_TRUE(within_seconds(10, [&] { return !refusal([&] { store_->add_rule(sample_rule(L"new")); }); }));
  EXPECT_EQ(names(), (std::vector<std::wstring>{L"first", L"second", L"new"}));
}

TEST_F(CutConnection, StoppedProcessOfTheServerIsGivenUp) {
  {
    const ScopedStop stopped(*schema_, process_of_store());
    EXPECT_EQ(refusal_kind([&] { store_->load_rules(); }), Kind::connection_lost);
    EXPECT_EQ(abandoned_connections(), 1);
    EXPECT_EQ(store_->load_rules().size(), 2u);
    store_->add_rule(sample_rule(L"new"));
  }
  EXPECT_TRUE(nothing_is_abandoned());
  EXPECT_EQ(store_->load_rules().size(), 3u);
}

TEST_F(CutConnection, WorkGoesOnAfterTheServerWasRestarted) {
  // The end of one process makes the server end all others at once and start anew, also the one that is asked for it,
  // perhaps before it answers.
  schema_->run(L"CHECKPOINT");  // or it would repeat what earlier tests have changed
  schema_->refused(signal(L"KILL", process_of_store()));
  EXPECT_TRUE(within_seconds(10, [&] { return !schema_->refused(L"SELECT 1").empty(); }));
  EXPECT_TRUE(refusal([&] { store_->load_rules(); }));
  EXPECT_TRUE(within_seconds(20, [&] { return !refusal([&] { store_->load_rules(); }); }));
  store_->add_rule(sample_rule(L"new"));
  EXPECT_EQ(store_->load_rules().size(), 3u);
  EXPECT_EQ(abandoned_connections(), 0);
}

TEST_F(CutConnection, ServerWithoutConnectionsLeftIsReported) {
  control_.reset();
  schema_->run(L"ALTER ROLE " + schema_->name() + L" CONNECTION LIMIT 0");
  schema_->text(L"SELECT bool_and(pg_terminate_backend(pid, 5000)) FROM pg_stat_activity WHERE usename = '" +
                schema_->name() + L"'");
  EXPECT_EQ(refusal_kind([&] { store_->load_rules(); }), Kind::connection_lost);
  EXPECT_EQ(refusal_kind([&] { store_->load_rules(); }), Kind::overloaded);
  schema_->run(L"ALTER ROLE " + schema_->name() + L" CONNECTION LIMIT -1");
  EXPECT_EQ(store_->load_rules().size(), 2u);
}

TEST_F(CutConnection, SlowServerIsWaitedFor) {
  schema_->run(
      L"CREATE FUNCTION slow() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN PERFORM pg_sleep(2); RETURN NEW; END $$; "
      L"CREATE TRIGGER slow BEFORE INSERT ON rules FOR EACH ROW EXECUTE FUNCTION slow()");
  const ULONGLONG start = GetTickCount64();
  store_->add_rule(sample_rule(L"new"));
  EXPECT_GE(GetTickCount64() - start, 1'900u);
  EXPECT_EQ(abandoned_connections(), 0);
  EXPECT_EQ(names().size(), 3u);
}

TEST_F(CutConnection, ChangeOfAnotherWorkbenchIsSeenWithinTwoSeconds) {
  const auto mine = schema_->open({.poll_interval = std::chrono::milliseconds(500)});
  EXPECT_FALSE(mine->poll_for_changes());
  control_->add_rule(sample_rule(L"theirs"));
  // The window looks once a second, so that the store must know of the change within one.
  EXPECT_TRUE(within_seconds(1, [&] { return mine->poll_for_changes(); }));
}

}  // namespace
