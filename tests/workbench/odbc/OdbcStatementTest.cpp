#include <gmock/gmock.h>

#include "FaultyOdbc.h"
#include "MemoryOdbc.h"
#include "OdbcConnection.h"
#include "OdbcError.h"

using namespace workbench::odbc;
using testing::ElementsAre;

namespace {

const DriverProfile two_drivers{{L"First", L"Second"}, {}, {}, {L"SSLmode", L"full"}};

class Odbc : public testing::Test {
 protected:
  OdbcConnection connect() { return {odbc_.api(), ConnectionString(L"Server=localhost"), two_drivers, {}}; }

  test_support::MemoryOdbc driver_;
  test_support::FaultyOdbc odbc_{driver_.api()};
};

/// The error with which `call` was refused.
template <class Call>
std::optional<OdbcError> refusal_of(Call&& call) {
  try {
    call();
    return std::nullopt;
  } catch (const OdbcError& error) {
    return error;
  }
}

TEST_F(Odbc, SecondNameOfTheDriverIsTriedWhenTheFirstIsUnknown) {
  for (const char* state : {"IM002", "IM003", "01000"}) {
    driver_.no_driver = state;
    driver_.connected.clear();
    driver_.missing_drivers = {L"First"};
    connect();
    EXPECT_THAT(driver_.connected, ElementsAre(L"Driver=First;Server=localhost;", L"Driver=Second;Server=localhost;"));
    driver_.missing_drivers.emplace_back(L"Second");
    EXPECT_EQ(refusal_of([&] { connect(); })->state(), state);
  }
  EXPECT_EQ(odbc_.live_handles(), 0);
}

TEST_F(Odbc, RefusalWithoutAStateMeansThatTheDriverIsUnknown) {
  driver_.has_diagnostics = false;
  driver_.missing_drivers = {L"First", L"Second"};
  EXPECT_EQ(refusal_of([&] { connect(); })->state(), "IM002");
  EXPECT_THAT(driver_.connected, ElementsAre(L"Driver=First;Server=localhost;", L"Driver=Second;Server=localhost;"));
}

TEST_F(Odbc, RefusalOfTheServerIsNotTriedAgain) {
  driver_.no_driver = "08001";
  driver_.missing_drivers = {L"First"};
  const auto error = refusal_of([&] { connect(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->state(), "08001");
  EXPECT_EQ(error->native(), 101);
  EXPECT_THAT(error->what(), testing::StartsWith("SQLDriverConnect; 08001 101 xxx"));
  EXPECT_THAT(error->what(), testing::HasSubstr("x; 01S00 102 x"));
  EXPECT_EQ(driver_.connected.size(), 1u);
}

TEST_F(Odbc, MissingOdbcIsAnErrorWithoutAState) {
  odbc_.fail_call(1, "");
  const auto error = refusal_of([&] { connect(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->state(), "");
  EXPECT_EQ(odbc_.live_handles(), 0);
}

TEST_F(Odbc, DriverWithoutMemoryIsAFailureOfMemory) {
  odbc_.fail_call(3, "HY001");
  EXPECT_THROW(connect(), std::bad_alloc);
}

TEST_F(Odbc, ParametersAndRowsTravel) {
  const OdbcConnection connection = connect();
  const std::wstring longest(2000, L'\x4E2D');
  driver_.rows = {
      {L"7", L"-9000000000", longest}, {std::nullopt, std::nullopt, std::wstring(511, L'y')}, {L"0", L"", L""}};
  OdbcStatement statement = connection.prepare(L"select ?");
  statement.bind(2, -9'000'000'000).bind(1, L"\xD83D\xDCC8").bind_null(3).bind(4, L"");
  EXPECT_EQ(statement.execute(), 3);
  EXPECT_THAT(driver_.log, ElementsAre(L"select ?", L"\xD83D\xDCC8", L"-9000000000", L"null", L""));
  ASSERT_TRUE(statement.fetch());
  EXPECT_EQ(statement.integer(0), 7);
  EXPECT_EQ(statement.integer(1), -9'000'000'000);
  EXPECT_EQ(statement.text(2), longest);
  ASSERT_TRUE(statement.fetch());
  EXPECT_EQ(statement.try_integer(0), std::nullopt);
  EXPECT_EQ(statement.try_text(1), std::nullopt);
  EXPECT_EQ(statement.text(2), std::wstring(511, L'y'));
  ASSERT_TRUE(statement.fetch());
  EXPECT_EQ(statement.try_text(1), L"");
  EXPECT_FALSE(statement.fetch());
  driver_.log.clear();
  statement.bind(3, L"x").execute();
  EXPECT_THAT(driver_.log, ElementsAre(L"close", L"\xD83D\xDCC8", L"-9000000000", L"x", L""));
}

TEST_F(Odbc, RowsComeInBlocks) {
  const OdbcConnection connection = connect();
  OdbcStatement statement = connection.prepare(L"select");
  statement.fetch_in_blocks({0, 5});
  const std::size_t one_row = [&] {
    driver_.rows = {{L"1", L"x"}};
    odbc_.fail_call(0, "");
    statement.execute();
    while (statement.fetch()) continue;
    return odbc_.calls();
  }();
  for (const int count : {0, 1, 255, 256, 257, 1000}) {
    driver_.rows.clear();
    for (int i = 0; i < count; ++i)
      driver_.rows.push_back({std::to_wstring(i - 9'000'000'000), std::wstring(static_cast<std::size_t>(i % 6), L'y')});
    odbc_.fail_call(0, "");
    EXPECT_EQ(statement.execute(), count);
    int i = 0;
    for (; statement.fetch(); ++i) {
      EXPECT_EQ(statement.integer(0), i - 9'000'000'000);
      EXPECT_EQ(statement.text(1), std::wstring(static_cast<std::size_t>(i % 6), L'y'));
    }
    EXPECT_EQ(i, count);
    EXPECT_FALSE(statement.fetch());
    EXPECT_LE(odbc_.calls(), one_row + 7) << count;
  }
}

TEST_F(Odbc, BlockThatDoesNotHoldItsValuesIsRefused) {
  const OdbcConnection connection = connect();
  driver_.rows = {{std::nullopt, std::nullopt}, {L"1", L"123456"}, {L"1", L"12345"}};
  OdbcStatement statement = connection.prepare(L"select");
  statement.fetch_in_blocks({0, 5}).execute();
  ASSERT_TRUE(statement.fetch());
  EXPECT_EQ(refusal_of([&] { statement.integer(0); })->state(), "22002");
  EXPECT_EQ(statement.try_text(1), std::nullopt);
  ASSERT_TRUE(statement.fetch());
  EXPECT_EQ(refusal_of([&] { statement.text(1); })->state(), "01004") << "it is too long";
  ASSERT_TRUE(statement.fetch());
  EXPECT_EQ(statement.text(1), L"12345");
  driver_.rows = {{L"1", L""}, {L"", L""}};
  statement.execute();
  EXPECT_TRUE(refusal_of([&] { statement.fetch(); })) << "the driver could not give a row";
}

TEST_F(Odbc, NullWhereAValueIsExpectedIsRefused) {
  const OdbcConnection connection = connect();
  driver_.rows = {{std::nullopt, std::nullopt}};
  OdbcStatement statement = connection.prepare(L"select");
  statement.execute();
  statement.fetch();
  EXPECT_EQ(refusal_of([&] { statement.integer(0); })->state(), "22002");
  EXPECT_EQ(refusal_of([&] { statement.text(1); })->state(), "22002");
}

TEST_F(Odbc, TextThatADriverWouldCorruptIsRefused) {
  const OdbcConnection connection = connect();
  OdbcStatement statement = connection.prepare(L"select ?");
  const std::wstring corrupt[] = {L"\xD800", L"a\xDC00", L"\xD800x", L"\xDC00\xD800", std::wstring(L"a\0b", 3)};
  for (const std::wstring& text : corrupt) {
    const auto error = refusal_of([&] { statement.bind(1, text); });
    ASSERT_TRUE(error) << testing::PrintToString(text);
    EXPECT_EQ(error->state(), "22021");
  }
}

TEST_F(Odbc, TransactionEndsOnce) {
  OdbcConnection connection = connect();
  {
    OdbcTransaction transaction(connection);
    transaction.commit();
  }
  { const OdbcTransaction transaction(connection); }
  EXPECT_THAT(driver_.log, ElementsAre(L"begin", L"commit", L"automatic", L"begin", L"rollback", L"automatic"));
  EXPECT_TRUE(connection.is_usable());
}

TEST_F(Odbc, ConnectionWhoseTransactionDoesNotEndIsNoLongerUsable) {
  // The calls are the start, the end and the return to automatic commits.
  for (const int call : {2, 3}) {
    {
      OdbcConnection connection = connect();
      odbc_.fail_call(call, "08S01");
      { const OdbcTransaction transaction(connection); }
      EXPECT_FALSE(connection.is_usable()) << call;
      driver_.log.clear();
    }
    EXPECT_THAT(driver_.log, ElementsAre(L"rollback", L"disconnect"));
  }
}

TEST_F(Odbc, DriverIsAskedWhetherTheConnectionEnded) {
  const OdbcConnection connection = connect();
  EXPECT_FALSE(connection.is_lost());
  driver_.is_lost = true;
  EXPECT_TRUE(connection.is_lost());
}

TEST_F(Odbc, ChangeThatWasAcknowledgedHasHappenedWhateverFollows) {
  OdbcConnection connection = connect();
  odbc_.fail_call(3, "08S01");
  {
    OdbcTransaction transaction(connection);
    EXPECT_NO_THROW(transaction.commit());
  }
  EXPECT_FALSE(connection.is_usable());
}

}  // namespace
