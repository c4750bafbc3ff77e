#include <functional>

#include "FaultLoop.h"
#include "FaultyOdbc.h"
#include "MemoryServer.h"
#include "ServerError.h"
#include "ServerRuleStore.h"
#include "StoreSamples.h"

using namespace workbench;
using Fault = test_support::FaultyOdbc::Fault;
using Kind = StoreErrorKind;

namespace {

/// A store on a server in memory, each of whose answers may be lost.
class LostAnswer : public testing::Test {
 protected:
  /// How a change ended while a call failed.
  struct Outcome {
    std::optional<StoreError> error;
    bool happened = false;
  };

  /// Adds, renames and deletes rules while the k-th call fails in this way, for every k. Afterwards the store works
  /// again. Returns how many changes were uncertain.
  int fail_each_call(Fault fault, const std::string& state, const std::function<void(const Outcome&)>& check) {
    int uncertain = 0;
    const std::function<void(RuleStore&)> changes[] = {
        [](RuleStore& store) { EXPECT_GT(store.add_rule(sample_rule(L"new")).number, 0); },
        [](RuleStore& store) { EXPECT_EQ(store.update_rule(1, sample_rule(L"renamed")).number, 1); },
        [](RuleStore& store) { store.delete_rule(1); },
    };
    for (const auto& change : changes) {
      test_support::fail_each_call([&](std::size_t number) {
        server_.emplace();
        odbc_.emplace(server_->api());
        const auto store = open_server_store(odbc::ConnectionString(L"Server=desk"), {.api = &odbc_->api()});
        store->add_rule(sample_rule(L"first"));
        const std::vector<std::wstring> before = server_->names();
        odbc_->fail_call(number, state, fault);
        const auto error = refusal([&] { change(*store); });
        odbc_->clear_faults();
        check({error, server_->names() != before});
        if (error && error->kind() == Kind::uncertain) ++uncertain;
        std::vector<std::wstring> after = server_->names();
        store->add_rule(sample_rule(L"later"));
        after.emplace_back(L"later");
        EXPECT_EQ(server_->names(), after) << "nothing happens twice or late";
        return odbc_->failed_call();
      });
    }
    return uncertain;
  }

  /// Opens a store whose tables have this version, or creates one from a copy, while the k-th call fails in this way,
  /// for every k. Afterwards the store can be opened. Returns how many openings were uncertain.
  int fail_each_call_of_an_opening(int old_version, const StoreCopy* copied, Fault fault, const std::string& state) {
    int uncertain = 0;
    test_support::fail_each_call([&](std::size_t number) {
      server_.emplace();
      server_->set_version(old_version);
      odbc_.emplace(server_->api());
      const auto open = [&] {
        return open_server_store(odbc::ConnectionString(L"Server=desk"), {.api = &odbc_->api(), .copied = copied});
      };
      odbc_->fail_call(number, state, fault);
      const auto error = refusal(open);
      odbc_->clear_faults();
      const bool happened = server_->version() != old_version;
      const bool is_uncertain = error && error->kind() == Kind::uncertain;
      EXPECT_EQ(happened, is_uncertain ? fault.reaches : !error);
      // No diagnostics belong to an environment that was not allocated.
      if (error && !is_uncertain) {
        EXPECT_EQ(error->kind(), server_error_kind(number == 1 ? "" : state));
      }
      uncertain += is_uncertain;
      EXPECT_EQ(refusal_kind([&] { open()->add_rule(sample_rule(L"later")); }),
                copied && happened ? std::optional(Kind::exists) : std::nullopt);
      EXPECT_EQ(odbc_->live_handles(), 0);
      return odbc_->failed_call();
    });
    return uncertain;
  }

  std::optional<MemoryServer> server_;
  std::optional<test_support::FaultyOdbc> odbc_;
};

const std::string lost_with[] = {"08S01", "08006", "HYT00", "40001", "57P01", "HY000", ""};

TEST_F(LostAnswer, CallThatDoesNotReachTheServerChangesNothing) {
  for (const std::string& state : lost_with) {
    const int uncertain = fail_each_call({}, state, [&](const Outcome& outcome) {
      EXPECT_EQ(outcome.happened, !outcome.error);
      if (outcome.error) {
        EXPECT_EQ(outcome.error->kind(), server_error_kind(state));
      }
    });
    EXPECT_EQ(uncertain, 0);
  }
}

TEST_F(LostAnswer, NewConnectionFindsOutWhetherTheChangeHappened) {
  for (const std::string& state : lost_with) {
    const int uncertain = fail_each_call({.reaches = true}, state,
                                         [](const Outcome& outcome) { EXPECT_EQ(outcome.happened, !outcome.error); });
    EXPECT_EQ(uncertain, 0);
  }
}

/// A store that is created, one that is created from a copy, and one that is brought to the present version.
const StoreCopy nothing;
constexpr std::pair<int, const StoreCopy*> openings[] = {{0, nullptr}, {0, &nothing}, {4, nullptr}};

TEST_F(LostAnswer, NewConnectionFindsOutWhetherTheTablesWerePrepared) {
  for (const auto& [version, copied] : openings)
    for (const std::string& state : lost_with)
      for (const bool reaches : {false, true})
        EXPECT_EQ(fail_each_call_of_an_opening(version, copied, {.reaches = reaches}, state), 0);
}

TEST_F(LostAnswer, PreparationIsUncertainOnlyWhereTheServerCannotSayWhetherItHappened) {
  for (const auto& [version, copied] : openings)
    for (const bool reaches : {false, true})
      EXPECT_EQ(fail_each_call_of_an_opening(version, copied, {.reaches = reaches, .is_lasting = true}, "08S01"), 1)
          << "at its commit";
}

TEST_F(LostAnswer, ChangeIsUncertainOnlyWhereTheServerCannotSayWhetherItHappened) {
  for (const bool reaches : {false, true}) {
    const int uncertain =
        fail_each_call({.reaches = reaches, .is_lasting = true}, "08S01", [&](const Outcome& outcome) {
          const bool is_uncertain = outcome.error && outcome.error->kind() == Kind::uncertain;
          EXPECT_EQ(outcome.happened, !outcome.error || (is_uncertain && reaches));
          if (is_uncertain) {
            EXPECT_EQ(outcome.error->subject(), L"desk");
          }
        });
    EXPECT_EQ(uncertain, 3) << "once for each change, at its commit";
  }
}

}  // namespace
