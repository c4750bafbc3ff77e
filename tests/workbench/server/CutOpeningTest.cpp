#include <functional>

#include "CuttingProxy.h"
#include "ServerChanges.h"
#include "ServerSchema.h"
#include "ServerTest.h"
#include "StoreThread.h"
#include "WithinSeconds.h"

using namespace workbench;
using Cut = CuttingProxy::Cut;
using Kind = StoreErrorKind;
using test_support::within_seconds;

namespace {

/// A store on a real server that is created, created from a copy or brought to the present version over a connection
/// that can be cut at the commit.
class CutOpening : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    if (IsSkipped()) return;
    proxy_.emplace(std::stoi(*schema_->options().find(L"Port")));
    const auto other = TestSchema().open({.first_content = sample_content()});
    other->update_rule(2, sample_rule(L"renamed"));
    copy_ = other->copy();
  }

  std::unique_ptr<RuleStore> open(const StoreCopy* copied = nullptr) const {
    odbc::ConnectionString options = schema_->options();
    options.set(L"Port", std::to_wstring(proxy_->port()));
    return open_server_store(
        options, {.first_content = sample_content(), .copied = copied, .time_limit = std::chrono::seconds(6)});
  }

  std::unique_ptr<RuleStore> open_copy() const { return open(&copy_); }

  /// Cuts the connection at the commit of an opening that prepares tables, in each of its three kinds. `check` gets
  /// what was refused, and whether the tables were prepared. Afterwards the store can be opened.
  template <class Check>
  void cut_each(Cut cut, const Check& check, CuttingProxy::Afterwards afterwards = CuttingProxy::Afterwards::connects) {
    for (const StoreCopy* copied : {static_cast<const StoreCopy*>(nullptr), static_cast<const StoreCopy*>(&copy_)})
      for (const bool is_old : {false, true}) {
        if (copied && is_old) continue;
        schema_.emplace();
        if (is_old) {
          schema_->open({.first_content = sample_content()});
          schema_->make_older();
        }
        const std::wstring before = schema_->tables();
        proxy_->cut_at_commit(cut, afterwards);
        const auto error = refusal([&] { EXPECT_EQ(open(copied)->load_rules().size(), 2u); });
        check(error ? std::optional(error->kind()) : std::nullopt, schema_->tables() != before);
        proxy_->refuse_connections(false);
        proxy_->end_silence();
        EXPECT_TRUE(within_seconds(10, [] { return abandoned_connections() == 0; }));
        EXPECT_TRUE(within_seconds(10, [&] { return !refusal([&] { open(); }); }));
        EXPECT_EQ(open()->load_rules().size(), 2u);
      }
  }

  std::optional<CuttingProxy> proxy_;
  StoreCopy copy_;
};

TEST_F(CutOpening, CommitThatTheServerDoesNotGetPreparesNothing) {
  cut_each(Cut::before_commit, [](std::optional<Kind> refused, bool happened) {
    EXPECT_EQ(refused, Kind::connection_lost);
    EXPECT_FALSE(happened);
  });
}

TEST_F(CutOpening, PreparationWhoseAcknowledgementIsLostIsFoundOverANewConnection) {
  cut_each(Cut::after_commit, [](std::optional<Kind> refused, bool happened) {
    EXPECT_EQ(refused, std::nullopt);
    EXPECT_TRUE(happened);
  });
  EXPECT_EQ(abandoned_connections(), 0);
}

TEST_F(CutOpening, SilentServerIsGivenUpAndThePreparationIsFoundOverANewConnection) {
  cut_each(Cut::silence_after_commit, [](std::optional<Kind> refused, bool happened) {
    EXPECT_EQ(refused, std::nullopt);
    EXPECT_TRUE(happened);
    EXPECT_EQ(abandoned_connections(), 1);
  });
}

TEST_F(CutOpening, PreparationThatASilentConnectionStillHoldsIsUncertainAndDoesNotHappenLater) {
  cut_each(Cut::silence_before_commit, [](std::optional<Kind> refused, bool happened) {
    EXPECT_EQ(refused, Kind::uncertain);
    EXPECT_FALSE(happened);
  });
}

TEST_F(CutOpening, PreparationIsUncertainWhenTheServerCannotBeAsked) {
  for (const Cut cut : {Cut::before_commit, Cut::after_commit})
    cut_each(
        cut,
        [&](std::optional<Kind> refused, bool happened) {
          EXPECT_EQ(refused, Kind::uncertain);
          EXPECT_EQ(happened, cut == Cut::after_commit);
        },
        CuttingProxy::Afterwards::refuses);
}

TEST_F(CutOpening, CopyWhoseAcknowledgementIsLostIsThereOnceWithItsChanges) {
  proxy_->cut_at_commit(Cut::after_commit);
  EXPECT_EQ(open_copy()->copy(), copy_);
  EXPECT_EQ(refusal_kind([&] { open_copy(); }), Kind::exists);
  schema_.emplace();
  proxy_->cut_at_commit(Cut::before_commit);
  EXPECT_EQ(refusal_kind([&] { open_copy(); }), Kind::connection_lost);
  EXPECT_EQ(open_copy()->copy(), copy_);
}

TEST_F(CutOpening, IdOfAPreparationIsWaitedForAndIsNotThatOfAnotherWorkbench) {
  ServerSession mine(odbc::system_odbc(), schema_->options(), postgres());
  ServerSession other(odbc::system_odbc(), schema_->options(), postgres());
  const auto settle = [&] { return other.call([&] { return settle_preparation(other, new_change_id()); }); };
  EXPECT_FALSE(settle()) << "there are no tables";
  mine.call([&] {
    const odbc::OdbcTransaction transaction(mine.connection());
    mine.prepare(mine.sql().lock_creation).execute();
    EXPECT_EQ(refusal_kind(settle), Kind::locked) << "it may be still under way";
  });
  schema_->open();
  EXPECT_FALSE(settle()) << "another workbench created them";
}

}  // namespace
