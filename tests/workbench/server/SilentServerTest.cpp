#include <functional>

#include "Depth.h"
#include "FaultLoop.h"
#include "FaultyOdbc.h"
#include "MemoryServer.h"
#include "ServerRuleStore.h"
#include "StoreSamples.h"
#include "StoreThread.h"
#include "WithinSeconds.h"

using namespace workbench;
using std::chrono::milliseconds;
using test_support::within_seconds;
using Fault = test_support::FaultyOdbc::Fault;
using Kind = StoreErrorKind;

namespace {

/// A store on a server in memory that does not answer.
class SilentServer : public testing::Test {
 protected:
  ~SilentServer() override { end_silence(); }

  std::unique_ptr<RuleStore> open(ServerStoreOptions settings = {}) {
    settings.api = &odbc_.api();
    if (settings.time_limit > milliseconds(1000)) settings.time_limit = milliseconds(60);
    return open_server_store(odbc::ConnectionString(L"Server=desk"), settings);
  }

  /// The server answers again, and the calls that were given up return.
  void end_silence() {
    odbc_.end_silence();
    EXPECT_TRUE(within_seconds(5, [] { return abandoned_connections() == 0; }));
  }

  using Change = std::function<ChangedRecord(RuleStore&)>;

  /// Changes a store of one rule while the k-th call fails in this way, for every k. Returns how many changes were
  /// uncertain.
  int fail_each_call(Fault fault, const Change& change) {
    int uncertain = 0;
    test_support::fail_each_call([&](std::size_t number) {
      server_.clear();
      const auto store = open();
      store->add_rule(sample_rule(L"first"));
      odbc_.fail_call(number, "08S01", fault);
      ChangedRecord record;
      const auto error = refusal([&] { record = change(*store); });
      end_silence();
      uncertain += error && error->kind() == Kind::uncertain;
      check(error, record, fault);
      std::vector<std::wstring> after = server_.names();
      store->add_rule(sample_rule(L"later"));
      after.emplace_back(L"later");
      EXPECT_EQ(server_.names(), after);
      return odbc_.failed_call();
    });
    return uncertain;
  }

  /// Compares what the change returned to its caller with what happened.
  void check(const std::optional<StoreError>& error, const ChangedRecord& record, Fault fault) {
    const bool happened = server_.names() != std::vector<std::wstring>{L"first"};
    if (!error) {
      EXPECT_TRUE(happened);
      EXPECT_EQ(server_.revision(record.number), record.revision);
    } else if (error->kind() == Kind::uncertain) {
      EXPECT_EQ(happened, fault.reaches);
    } else {
      EXPECT_EQ(error->kind(), Kind::connection_lost);
      EXPECT_FALSE(happened);
    }
  }

  /// The kind of the error with which a call was refused; `cancelled` for what the user gave up.
  static std::optional<Kind> kind_or_cancelled(const std::function<void()>& call) {
    try {
      return refusal_kind(call);
    } catch (const schedule::Cancelled&) {
      return Kind::cancelled;
    }
  }

  MemoryServer server_;
  test_support::FaultyOdbc odbc_{server_.api()};
};

TEST_F(SilentServer, CallIsGivenUpAndTheNextOneGetsAnotherConnection) {
  const auto store = open();
  store->add_rule(sample_rule(L"first"));
  for (int k = 1; k <= 5; ++k) {
    odbc_.fail_call(k, "08S01", {.is_silent = true});
    EXPECT_EQ(refusal_kind([&] { store->load_rules(); }), Kind::connection_lost);
    EXPECT_EQ(abandoned_connections(), k);
    EXPECT_EQ(store->load_rules().size(), 1u);
  }
  end_silence();
  EXPECT_EQ(store->load_rules().size(), 1u);
}

TEST_F(SilentServer, EachCallOfAChangeMayBeSilentAndNothingHappensTwiceOrLate) {
  const Change changes[] = {
      [](RuleStore& store) {
        const StoredRule added = store.add_rule(sample_rule(L"new"));
        return ChangedRecord{added.number, added.revision};
      },
      [](RuleStore& store) {
        const StoredRule updated = store.update_rule(1, sample_rule(L"renamed"));
        return ChangedRecord{updated.number, updated.revision};
      },
  };
  for (const bool is_lasting : {false, true})
    for (const bool reaches : {false, true})
      for (const Change& change : changes) {
        if (!test_support::deep() && (is_lasting || &change != &changes[0])) continue;
        const Fault fault{.reaches = reaches, .is_silent = true, .is_lasting = is_lasting};
        EXPECT_EQ(fail_each_call(fault, change), reaches && !is_lasting ? 0 : 1) << "at most the commit is uncertain";
      }
  EXPECT_EQ(odbc_.live_handles(), 0);
}

TEST_F(SilentServer, EachCallOfAnOpeningMayBeSilentAndNothingHappensTwiceOrLate) {
  const StoreCopy nothing;
  for (const Fault fault :
       {Fault{.is_silent = true}, Fault{.reaches = true, .is_silent = true},
        Fault{.is_silent = true, .is_lasting = true}, Fault{.reaches = true, .is_silent = true, .is_lasting = true}}) {
    if (!test_support::deep() && fault.is_lasting) continue;
    int uncertain = 0;
    test_support::fail_each_call([&](std::size_t number) {
      server_.clear();
      server_.set_version(0);
      odbc_.fail_call(number, "08S01", fault);
      const auto kind = refusal_kind([&] { open({.copied = &nothing}); });
      end_silence();
      const bool happened = server_.version() != 0;
      if (kind == Kind::uncertain) {
        ++uncertain;
        EXPECT_EQ(happened, fault.reaches);
      } else {
        EXPECT_EQ(kind, happened ? std::nullopt : std::optional(Kind::connection_lost));
      }
      EXPECT_EQ(refusal_kind([&] { open({.copied = &nothing}); }),
                happened ? std::optional(Kind::exists) : std::nullopt);
      return odbc_.failed_call();
    });
    EXPECT_EQ(uncertain, fault.reaches && !fault.is_lasting ? 0 : 1) << "at most the commit is uncertain";
  }
  EXPECT_EQ(odbc_.live_handles(), 0);
}

TEST_F(SilentServer, WorkbenchThatEndsDoesNotWaitForIt) {
  auto store = open();
  odbc_.fail_call(1, "08S01", {.is_silent = true, .is_lasting = true});
  EXPECT_EQ(refusal_kind([&] { store->load_rules(); }), Kind::connection_lost);
  EXPECT_EQ(refusal_kind([&] { store->load_rules(); }), Kind::connection_lost);
  const ULONGLONG start = GetTickCount64();
  store.reset();
  EXPECT_LT(GetTickCount64() - start, 2'000u);
}

TEST_F(SilentServer, ChangesOfOthersAreFoundWithoutWaiting) {
  const auto mine = open({.poll_interval = milliseconds(20)});
  const auto theirs = open();
  int notified = 0;
  const StoreSubscription subscription = mine->subscribe([&] { ++notified; });
  EXPECT_FALSE(mine->poll_for_changes());
  theirs->add_rule(sample_rule(L"theirs"));
  EXPECT_TRUE(within_seconds(2, [&] { return mine->poll_for_changes(); }));
  EXPECT_EQ(notified, 1);
  mine->add_rule(sample_rule(L"mine"));
  Sleep(100);
  EXPECT_FALSE(mine->poll_for_changes()) << "its own changes are no news";
}

TEST_F(SilentServer, LookForChangesNeverWaitsAndReportsSilenceOnce) {
  const auto store = open({.poll_interval = milliseconds(5)});
  odbc_.fail_call(1, "08S01", {.is_silent = true});
  Sleep(20);
  const ULONGLONG start = GetTickCount64();
  EXPECT_FALSE(store->poll_for_changes());
  EXPECT_LT(GetTickCount64() - start, 50u);
  Sleep(150);
  EXPECT_EQ(refusal_kind([&] { store->poll_for_changes(); }), Kind::connection_lost);
  EXPECT_EQ(abandoned_connections(), 1);
  EXPECT_TRUE(store->poll_for_changes()) << "what happened meanwhile is not known";
  EXPECT_FALSE(store->poll_for_changes());
}

TEST_F(SilentServer, RefusalOfALookIsReportedAndTheNextOneFindsTheServer) {
  const auto store = open({.poll_interval = milliseconds(5)});
  odbc_.fail_call(1, "08S01");
  EXPECT_TRUE(
      within_seconds(2, [&] { return refusal_kind([&] { store->poll_for_changes(); }) == Kind::connection_lost; }));
  open()->add_rule(sample_rule(L"theirs"));
  EXPECT_TRUE(within_seconds(2, [&] { return store->poll_for_changes(); }));
}

/// Waits as a test says.
class ScriptedWait final : public ServerWait {
 public:
  explicit ScriptedWait(std::function<bool()> act) : act_(std::move(act)) {}

  bool wait(HANDLE event, milliseconds at_most) override {
    if (!act_()) return false;
    return ServerWait::wait(event, at_most);
  }

 private:
  std::function<bool()> act_;
};

TEST_F(SilentServer, CallInACallIsRefused) {
  RuleStore* inner = nullptr;
  int refused = 0;
  const auto store = open({.create_wait = [&] {
    return std::make_unique<ScriptedWait>([&] {
      if (!inner) return true;
      refused += refusal_kind([&] { inner->load_rules(); }) == Kind::locked;
      refused += refusal_kind([&] { inner->add_rule(sample_rule(L"nested")); }) == Kind::locked;
      return true;
    });
  }});
  inner = store.get();
  store->add_rule(sample_rule(L"outer"));
  EXPECT_EQ(refused, 2);
  EXPECT_EQ(server_.names(), std::vector<std::wstring>{L"outer"});
}

TEST_F(SilentServer, UserWhoGivesUpIsToldWhatIsKnown) {
  bool waits = true;
  const auto store = open({.time_limit = milliseconds(1000), .create_wait = [&] {
                             return std::make_unique<ScriptedWait>([&] {
                               if (!waits) Sleep(50);
                               return waits;
                             });
                           }});
  const auto give_up = [&](std::size_t call, Fault fault, const std::function<void()>& work) {
    odbc_.fail_call(call, "08S01", fault);
    waits = false;
    const auto kind = kind_or_cancelled(work);
    waits = true;
    end_silence();
    return kind;
  };
  EXPECT_EQ(give_up(1, {.is_silent = true}, [&] { store->load_rules(); }), Kind::cancelled);
  const auto add = [&] { store->add_rule(sample_rule(L"new")); };
  EXPECT_EQ(give_up(1, {.is_silent = true}, add), Kind::cancelled);
  EXPECT_TRUE(server_.names().empty());
  // The last call but one of a change is its commit.
  store->load_rules();
  odbc_.fail_call(0, "");
  add();
  const std::size_t commit = odbc_.calls() - 1;
  EXPECT_EQ(give_up(commit, {.reaches = true, .is_silent = true}, add), Kind::uncertain);
}

TEST_F(SilentServer, ProgressIsCalledWhileTheServerIsWaitedForAndCancels) {
  const auto store = open({.time_limit = milliseconds(900)});
  int left = 0;
  store->set_progress([&](std::size_t done, std::size_t all) {
    EXPECT_LT(done, all);
    return --left > 0;
  });
  const auto add = [&] { store->add_rule(sample_rule(L"new")); };
  const auto cancel_at = [&](int report, std::size_t call, Fault fault) {
    left = report;
    odbc_.fail_call(call, "08S01", fault);
    const auto kind = kind_or_cancelled(add);
    end_silence();
    return kind;
  };
  EXPECT_EQ(cancel_at(3, 1, {.is_silent = true}), Kind::cancelled);
  EXPECT_EQ(left, 0) << "it is called again and again";
  EXPECT_EQ(cancel_at(100, 1, {.is_silent = true}), Kind::connection_lost) << "the time limit holds all the same";
  EXPECT_TRUE(server_.names().empty());
  store->load_rules();
  odbc_.fail_call(0, "");
  add();
  EXPECT_EQ(cancel_at(1, odbc_.calls() - 1, {.reaches = true, .is_silent = true}), Kind::uncertain);
  struct Thrown {};
  store->set_progress([](std::size_t, std::size_t) -> bool { throw Thrown(); });
  odbc_.fail_call(1, "08S01", {.is_silent = true});
  EXPECT_THROW(store->load_rules(), Thrown);
  end_silence();
  store->set_progress({});
  EXPECT_EQ(store->load_rules().size(), 2u);
}

TEST_F(SilentServer, OpeningIsCancelled) {
  odbc_.fail_call(1, "08S01", {.is_silent = true});
  int reports = 0;
  EXPECT_EQ(
      kind_or_cancelled([&] {
        open({.time_limit = milliseconds(900), .progress = [&](std::size_t, std::size_t) { return ++reports < 2; }});
      }),
      Kind::cancelled);
  EXPECT_EQ(reports, 2);
}

TEST_F(SilentServer, WhatTheProgressThrowsReachesTheCaller) {
  const auto store = open();
  struct Thrown {};
  const auto fail = [](std::size_t, std::size_t) -> bool { throw Thrown(); };
  EXPECT_THROW(store->import_records({{sample_rule(L"new")}}, fail), Thrown);
  store->add_rule(sample_rule(L"later"));
}

}  // namespace
