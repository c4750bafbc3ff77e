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

TEST_F(LostAnswer, ChangeIsUncertainOnlyWhereNobodyCanTellWhetherItHappened) {
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
