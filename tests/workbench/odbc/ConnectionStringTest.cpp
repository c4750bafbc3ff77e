#include <gtest/gtest.h>

#include "ConnectionString.h"
#include "Depth.h"
#include "RandomCases.h"

using workbench::odbc::ConnectionString;
using workbench::odbc::ConnectionStringError;
using Reason = ConnectionStringError::Reason;

namespace {

/// Why the string is refused, and for which part.
std::optional<std::pair<Reason, int>> refused(const std::wstring& text) {
  try {
    const ConnectionString string(text);
    return std::nullopt;
  } catch (const ConnectionStringError& error) {
    return std::pair(error.reason(), error.part());
  }
}

TEST(ConnectionString, FindsValuesByKeywordsOfAnyCase) {
  const ConnectionString string(L" Server = db.example ;PORT=5432;; Uid=a b=c ;");
  EXPECT_EQ(string.find(L"server"), L"db.example");
  EXPECT_EQ(string.find(L"Port"), L"5432");
  EXPECT_EQ(string.find(L"UID"), L"a b=c");
  EXPECT_EQ(string.find(L"Pwd"), std::nullopt);
  EXPECT_EQ(string.keywords(), (std::vector<std::wstring>{L"Server", L"PORT", L"Uid"}));
  EXPECT_TRUE(ConnectionString(L" ; ").keywords().empty());
}

TEST(ConnectionString, ReadsBracedValuesToTheBraceThatIsNotDoubled) {
  const ConnectionString string(L"Pwd={a;b}}c=} ;Uid={};Driver={}}};Database= {x}");
  EXPECT_EQ(string.find(L"Pwd"), L"a;b}c=");
  EXPECT_EQ(string.find(L"Uid"), L"");
  EXPECT_EQ(string.find(L"Driver"), L"}");
  EXPECT_EQ(string.find(L"Database"), L"x");
}

TEST(ConnectionString, RefusesWhatHasTwoMeanings) {
  EXPECT_EQ(refused(L"Server=x;Pwd"), std::pair(Reason::no_value, 2));
  EXPECT_EQ(refused(L"Pwd;Server=x"), std::pair(Reason::no_value, 1));
  EXPECT_EQ(refused(L"=x"), std::pair(Reason::no_value, 1));
  EXPECT_EQ(refused(L"Server=x;Pwd={a"), std::pair(Reason::unclosed_brace, 2));
  EXPECT_EQ(refused(L"Pwd={a}}"), std::pair(Reason::unclosed_brace, 1));
  EXPECT_EQ(refused(L"Pwd={a}b;Server=x"), std::pair(Reason::text_after_brace, 1));
  EXPECT_EQ(refused(L"Server=x;Port=1;SERVER=y"), std::pair(Reason::repeated_keyword, 3));
  EXPECT_STREQ(ConnectionStringError(Reason::no_value, 2).what(), "part 2 of the connection string is refused");
}

TEST(ConnectionString, BracesOnlyWhatNeedsThem) {
  ConnectionString string;
  string.set(L"Driver", L"Some Driver(x64)");
  string.set(L"Pwd", L"a;{b}");
  string.set(L"Uid", L" blank");
  string.set(L"Database", L"");
  EXPECT_EQ(string.text(), L"Driver=Some Driver(x64);Pwd={a;{b}}};Uid={ blank};Database=;");
  string.set(L"PWD", L"x");
  EXPECT_EQ(string.take(L"uid"), L" blank");
  EXPECT_EQ(string.take(L"uid"), std::nullopt);
  EXPECT_EQ(string.text(), L"Driver=Some Driver(x64);Pwd=x;Database=;");
}

TEST(ConnectionString, AnyValueComesBack) {
  test_support::RandomCases random;
  constexpr wchar_t units[] = L"{};= a\t\"'\xD800\x4E2D";
  for (int number = 0; number < test_support::repetitions(20'000, 1'000); ++number) {
    SCOPED_TRACE(random.trace(number));
    std::wstring value;
    for (unsigned left = random.below(7); left > 0; --left) value += units[random.below(std::size(units) - 1)];
    ConnectionString string;
    string.set(L"Before", value);
    string.set(L"After", L"x");
    const ConnectionString again(string.text());
    ASSERT_EQ(again.find(L"Before"), value);
    ASSERT_EQ(again.find(L"After"), L"x");
  }
}

}  // namespace
