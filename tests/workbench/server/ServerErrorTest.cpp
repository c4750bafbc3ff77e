#include <gmock/gmock.h>

#include "FaultyOdbc.h"
#include "MemoryOdbc.h"
#include "MemoryServer.h"
#include "ServerError.h"
#include "ServerRuleStore.h"
#include "StoreSamples.h"

using namespace workbench;
using Kind = StoreErrorKind;

namespace {

TEST(ServerError, EachStateHasItsKind) {
  const std::pair<const char*, Kind> kinds[] = {
      {"", Kind::unavailable},          {"01000", Kind::no_driver},       {"08001", Kind::unreachable},
      {"08006", Kind::connection_lost}, {"08007", Kind::connection_lost}, {"08S01", Kind::connection_lost},
      {"22021", Kind::invalid_value},   {"23505", Kind::duplicate_name},  {"23503", Kind::in_use},
      {"23514", Kind::invalid_value},   {"25006", Kind::read_only},       {"28P01", Kind::login_refused},
      {"28000", Kind::login_refused},   {"40001", Kind::locked},          {"40P01", Kind::locked},
      {"42501", Kind::read_only},       {"42P01", Kind::damaged},         {"53100", Kind::full},
      {"53300", Kind::overloaded},      {"53200", Kind::overloaded},      {"55P03", Kind::locked},
      {"57014", Kind::locked},          {"57P01", Kind::connection_lost}, {"57P03", Kind::connection_lost},
      {"HY000", Kind::unavailable},     {"HYT00", Kind::connection_lost}, {"IM002", Kind::no_driver},
      {"XX001", Kind::damaged},         {"01004", Kind::damaged},         {"XX000", Kind::unavailable},
      {"2", Kind::unavailable},
  };
  for (const auto& [state, kind] : kinds) EXPECT_EQ(server_error_kind(state), kind) << state;
}

class OpenServerStore : public testing::Test {
 protected:
  std::optional<StoreError> refused() const {
    return refusal(
        [&] { open_server_store(odbc::ConnectionString(L"Server=db;Uid=desk;Pwd=secret"), {.api = &odbc_.api()}); });
  }

  test_support::MemoryOdbc driver_;
  test_support::FaultyOdbc odbc_{driver_.api()};
};

TEST_F(OpenServerStore, MissingOdbcIsAnUnavailableStore) {
  odbc_.fail_call(1, "");
  const auto error = refused();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind(), Kind::unavailable);
  EXPECT_EQ(error->subject(), L"desk@db");
  EXPECT_EQ(odbc_.live_handles(), 0);
}

TEST_F(OpenServerStore, MissingDriverIsNamedAsSuchAndThePasswordIsInNoMessage) {
  driver_.missing_drivers = {L"PostgreSQL Unicode", L"PostgreSQL Unicode(x64)"};
  const auto error = refused();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind(), Kind::no_driver);
  EXPECT_THAT(error->what(), testing::Not(testing::HasSubstr("secret")));
  ASSERT_EQ(driver_.connected.size(), 2u);
  EXPECT_EQ(driver_.connected[1],
            L"Driver=PostgreSQL Unicode(x64);Server=db;Uid=desk;Pwd=secret;Debug=0;CommLog=0;LFConversion=0;"
            L"SSLmode=verify-full;");
}

TEST_F(OpenServerStore, OptionThatTheServerDoesNotHaveIsRefusedBeforeAnythingIsConnected) {
  EXPECT_THROW(open_server_store(odbc::ConnectionString(L"Server=db;pqopt=sslmode"), {.api = &odbc_.api()}),
               odbc::ConnectionStringError);
  EXPECT_TRUE(driver_.connected.empty());
}

/// How the rules of a store are refused that gives this text for a rule.
std::optional<Kind> refusal_of_rule(const std::optional<std::wstring>& text) {
  MemoryServer server;
  const auto store = open_server_store(odbc::ConnectionString(L"Server=desk"), {.api = &server.api()});
  store->add_rule(sample_rule(L"first"));
  server.text_of_rules = text;
  const auto refused = refusal_kind([&] { store->load_rules(); });
  EXPECT_EQ(refusal_kind([&] { store->try_load_rule(1); }), refused);
  return refused;
}

TEST(ServerError, NumbersThatNoRuleHasAreDamage) {
  // Number and revision, then the numbers of a rule in their order, and the name.
  for (const wchar_t* right :
       {L"1 1 0 0 0 1 0 1 0 0 0:name", L"2147483647 9223372036854775807 99 1 1 31 2 5 6 2 1:name"})
    EXPECT_EQ(refusal_of_rule(right), std::nullopt) << testing::PrintToString(right);
  for (const wchar_t* wrong :
       {L"", L" ", L"1", L"1 1 0 0 0 1 0 1 0 0:name", L"1 1 0 0 0 1 0 1 0 0 1 name", L"1 1 0 0 0 1 0 1 0 0 0",
        L"1 1 0 0 0 1 0 1 0  0:name", L" 1 1 0 0 0 1 0 1 0 0 0:name", L"1\t1 0 0 0 1 0 1 0 0 0:name",
        L"1 1 x 0 0 1 0 1 0 0 0:name", L"1 1 0x1 0 0 1 0 1 0 0 0:name", L"1 1 +1 0 0 1 0 1 0 0 0:name",
        L"1 1 1.0 0 0 1 0 1 0 0 0:name", L"1 1 \xFF11 0 0 1 0 1 0 0 0:name", L"1 1 \x0131 0 0 1 0 1 0 0 0:name",
        L"1 9223372036854775808 0 0 0 1 0 1 0 0 0:name", L"1 1 0 0 0 1 0 1 0 0 0:na\\me"})
    EXPECT_EQ(refusal_of_rule(wrong), Kind::damaged) << testing::PrintToString(wrong);
  EXPECT_EQ(refusal_of_rule(std::nullopt), Kind::damaged);
  EXPECT_EQ(refusal_of_rule(std::wstring(300, L'1')), Kind::damaged);
  for (const wchar_t* outside :
       {L"0 1 0 0 0 1 0 1 0 0 0:name", L"2147483648 1 0 0 0 1 0 1 0 0 0:name", L"1 0 0 0 0 1 0 1 0 0 0:name"})
    EXPECT_EQ(refusal_of_rule(outside), Kind::damaged) << testing::PrintToString(outside);
  for (const RuleColumn& changed : rule_columns)
    for (const std::int64_t outside : {changed.least - std::int64_t{1}, changed.greatest + std::int64_t{1},
                                       changed.least + (std::int64_t{1} << 32)}) {
      std::wstring text = L"1 1";
      for (const RuleColumn& column : rule_columns)
        text += L' ' + std::to_wstring(column.field == changed.field ? outside : column.least);
      EXPECT_EQ(refusal_of_rule(text + L":name"), Kind::damaged) << testing::PrintToString(text);
    }
}

TEST(ServerError, NameBeginsAfterTheLastNumber) {
  for (const wchar_t* name : {L"1:2 3", L":7", L"  ", L"-"}) {
    MemoryServer server;
    const auto store = open_server_store(odbc::ConnectionString(L"Server=desk"), {.api = &server.api()});
    store->add_rule(sample_rule(name));
    ASSERT_EQ(store->load_rules().size(), 1u);
    EXPECT_EQ(store->load_rules()[0].rule.name, name);
    EXPECT_EQ(store->try_load_rule(1)->rule.name, name);
  }
}

}  // namespace
