#include <functional>
#include <span>

#include "Depth.h"
#include "FaultLoop.h"
#include "FaultyOdbc.h"
#include "ServerError.h"
#include "ServerTest.h"

using namespace workbench;

namespace {

const std::string states[] = {"08001", "08006", "08007", "08S01", "22021", "23505", "25006",
                              "28P01", "40001", "40P01", "42501", "53100", "53300", "55P03",
                              "57014", "57P01", "57P03", "HY000", "HYT00", "XX001", ""};

/// What a store holds, without the numbers that each change of the whole content gives anew.
StoreContent content_of(RuleStore& store) {
  StoreContent content{{}, settings_of(store), store.load_calendars()};
  for (const StoredRule& stored : store.load_rules()) content.rules.push_back(stored.rule);
  return content;
}

class ServerFault : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    if (IsSkipped()) return;
    control_ = schema_->open({.first_content = sample_content()});
    odbc_.emplace(odbc::system_odbc());
  }

  /// The numbers of the first rule and of the first setting.
  long rule() const { return control_->load_rules().front().number; }
  long setting() const { return control_->load_settings().front().number; }

  /// Runs a change while its k-th call of ODBC fails, for every k, with this state.
  void fail_each_call(const std::function<void(RuleStore&)>& change, const std::string& state) {
    const auto store = open_server_store(schema_->options(), {.api = &odbc_->api()});
    test_support::fail_each_call([&](std::size_t number) {
      control_->replace_content(sample_content());
      store->load_rules();  // the store is connected again after the last round
      const int handles = odbc_->live_handles();
      odbc_->fail_call(number, state);
      const auto error = refusal([&] { change(*store); });
      odbc_->clear_faults();
      if (error) {
        EXPECT_EQ(error->kind(), server_error_kind(state)) << error->what();
      }
      EXPECT_EQ(content_of(*control_) == sample_content(), error.has_value());
      EXPECT_NO_THROW(store->load_rules());
      EXPECT_EQ(odbc_->live_handles(), handles);
      return odbc_->failed_call();
    });
  }

  /// Reads a store while the k-th call of ODBC fails, for every k, with this state. Returns how many failures were not
  /// reported, because everything had been read.
  int fail_each_call_of_a_load(RuleStore& store, const std::string& state, const std::function<void()>& load) {
    int unreported = 0;
    test_support::fail_each_call([&](std::size_t number) {
      store.load_rules();
      odbc_->fail_call(number, state);
      const auto error = refusal(load);
      odbc_->clear_faults();
      auto failed = odbc_->failed_call();
      unreported += failed && !error;
      if (error) {
        EXPECT_TRUE(failed);
        EXPECT_EQ(error->kind(), server_error_kind(state)) << error->what();
      }
      return failed;
    });
    return unreported;
  }

  /// Opens a store while its k-th call of ODBC fails, for every k, with this state. `prepare` says what is in the
  /// schema before.
  void fail_each_call_of_an_opening(const std::function<void()>& prepare, const StoreCopy* copied,
                                    const std::string& state) {
    test_support::fail_each_call([&](std::size_t number) {
      prepare();
      const std::wstring before = schema_->tables();
      odbc_->fail_call(number, state);
      const auto error = refusal([&] {
        open_server_store(schema_->options(),
                          {.first_content = sample_content(), .api = &odbc_->api(), .copied = copied});
      });
      odbc_->clear_faults();
      EXPECT_EQ(odbc_->live_handles(), 0);
      EXPECT_EQ(schema_->tables() == before, error.has_value());
      // No diagnostics belong to an environment that was not allocated, and a connection that is refused without any
      // lacks its driver.
      constexpr std::size_t connects = 5;
      if (error) {
        const std::string reported = number == 1 ? "" : number == connects && state.empty() ? "IM002" : state;
        EXPECT_EQ(error->kind(), server_error_kind(reported)) << error->what();
      }
      EXPECT_EQ(content_of(*schema_->open({.first_content = sample_content()})), sample_content());
      return odbc_->failed_call();
    });
  }

  std::optional<test_support::FaultyOdbc> odbc_;
  std::shared_ptr<RuleStore> control_;
};

TEST_F(ServerFault, EachFailedCallOfAChangeLeavesTheStoreAsItWas) {
  const std::function<void(RuleStore&)> changes[] = {
      [](RuleStore& store) { store.add_rule(sample_rule(L"new")); },
      [this](RuleStore& store) { store.update_rule(rule(), sample_rule(L"renamed")); },
      [this](RuleStore& store) { store.delete_rule(rule() + 1); },
      [](RuleStore& store) {
        store.add_setting({L"new", L""});
      },
      [this](RuleStore& store) {
        store.update_setting(setting(), {L"renamed", L""});
      },
      [this](RuleStore& store) { store.delete_setting(setting()); },
      [](RuleStore& store) {
        store.import_records({{sample_rule(L"new"), {.name = L"first"}}, std::vector{sample_setting(L"x", L"")}});
      },
      [](RuleStore& store) { store.replace_calendars({sample_calendar("new")}); },
      [](RuleStore& store) {
        store.replace_content({{sample_rule(L"new")}, {{L"x", L"new"}}});
      },
  };
  std::size_t next_state = 0;
  for (const auto& change : changes) {
    const int rounds = test_support::repetitions(static_cast<int>(std::size(states)), 3);
    for (int i = 0; i < rounds && !HasFailure(); ++i) fail_each_call(change, states[next_state++ % std::size(states)]);
  }
}

TEST_F(ServerFault, EachFailedCallOfALoadIsReported) {
  const auto store = open_server_store(schema_->options(), {.api = &odbc_->api()});
  const StoreSnapshot before = snapshot_of(*store);
  for (const std::string& state : states)
    EXPECT_EQ(fail_each_call_of_a_load(*store, state,
                                       [&] {
                                         EXPECT_EQ(snapshot_of(*store), before);
                                         EXPECT_FALSE(store->poll_for_changes());
                                       }),
              0);
}

TEST_F(ServerFault, EachFailedCallOfACopyIsReported) {
  const auto store = open_server_store(schema_->options(), {.api = &odbc_->api()});
  const std::vector<RuleChange> changes = store->load_changes(1);
  const StoreCopy copy = store->copy();
  for (const std::string& state : std::span(states).first(
           static_cast<std::size_t>(test_support::repetitions(static_cast<int>(std::size(states)), 2))))
    EXPECT_EQ(fail_each_call_of_a_load(*store, state,
                                       [&] {
                                         EXPECT_EQ(store->load_changes(1), changes);
                                         EXPECT_EQ(store->copy(), copy);
                                       }),
              2)
        << "the end of the transaction and the return to automatic commits";
}

TEST_F(ServerFault, EachFailedCallOfAnOpeningPreparesAllTablesOrNone) {
  const StoreCopy copy = control_->copy();
  const auto empty_schema = [&] {
    schema_->run(L"DROP SCHEMA " + schema_->name() + L" CASCADE; CREATE SCHEMA " + schema_->name() +
                 L" AUTHORIZATION " + schema_->name());
  };
  const auto create_old_store = [&] {
    empty_schema();
    schema_->open({.first_content = sample_content()});
    schema_->make_older();
  };
  struct Opening {
    std::function<void()> prepare;
    const StoreCopy* copied;
  };
  const Opening openings[] = {{empty_schema, nullptr}, {empty_schema, &copy}, {create_old_store, nullptr}};
  std::size_t next_state = 0;
  for (const Opening& opening : openings)
    for (int rounds = test_support::repetitions(7, 1); rounds > 0 && !HasFailure(); --rounds)
      fail_each_call_of_an_opening(opening.prepare, opening.copied, states[next_state++ % std::size(states)]);
}

}  // namespace
