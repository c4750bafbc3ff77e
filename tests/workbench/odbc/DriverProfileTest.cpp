#include <windows.h>
#include <gtest/gtest.h>

#include "DriverProfile.h"

using namespace workbench::odbc;

namespace {

const DriverProfile profile{{L"Some Driver", L"Some Driver(x64)"},
                            {{L"Debug", L"0"}},
                            {L"Schema"},
                            {L"SSLmode", L"full"},
                            {},
                            {},
                            {},
                            {L"ZD_OTHER_SERVER"}};

std::vector<std::wstring> attempts(const std::wstring& options) {
  std::vector<std::wstring> texts;
  for (const ConnectionString& attempt : connection_attempts(ConnectionString(options), profile))
    texts.push_back(attempt.text());
  return texts;
}

std::wstring described(const std::wstring& options) { return describe(ConnectionString(options), profile); }

TEST(DriverProfile, TriesEachNameOfTheDriverUnlessOneIsNamed) {
  EXPECT_EQ(attempts(L"Server=localhost;Pwd={a;b}"),
            (std::vector<std::wstring>{L"Driver=Some Driver;Server=localhost;Pwd={a;b};Debug=0;",
                                       L"Driver=Some Driver(x64);Server=localhost;Pwd={a;b};Debug=0;"}));
  EXPECT_EQ(attempts(L"driver=Other;Server=::1"), std::vector<std::wstring>{L"driver=Other;Server=::1;Debug=0;"});
}

TEST(DriverProfile, FixedOptionsHoldWhateverTheStringSays) {
  EXPECT_EQ(attempts(L"Driver=Other;Server=::1;DEBUG=1"),
            std::vector<std::wstring>{L"Driver=Other;Server=::1;DEBUG=0;"});
}

TEST(DriverProfile, ServerThatIsNotNamedIsThisMachineAndNotWhatTheEnvironmentSays) {
  for (const wchar_t* unnamed : {L"Driver=x", L"Driver=x;Server=", L"Driver=x;Server= "})
    EXPECT_EQ(attempts(unnamed), std::vector<std::wstring>{L"Driver=x;Server=localhost;Debug=0;"}) << unnamed;
}

TEST(DriverProfile, OtherMachinesProveWhoTheyAreUnlessTheStringAsksForLess) {
  EXPECT_EQ(attempts(L"DSN=desk"), std::vector<std::wstring>{L"DSN=desk;Debug=0;SSLmode=full;"});
  EXPECT_EQ(attempts(L"DSN=desk;Server=localhost"),
            std::vector<std::wstring>{L"DSN=desk;Server=localhost;Debug=0;SSLmode=full;"});
  for (const wchar_t* server : {L"db", L"127.0.0.1.example", L"127.0.0.2", L"localhost.example"})
    EXPECT_TRUE(attempts(std::wstring(L"Driver=x;Server=") + server)[0].ends_with(L"SSLmode=full;")) << server;
  EXPECT_EQ(attempts(L"Driver=x;Server=db;sslMODE=require"),
            std::vector<std::wstring>{L"Driver=x;Server=db;sslMODE=require;Debug=0;"});
}

TEST(DriverProfile, EnvironmentThatLeadsElsewhereMakesThisMachineAnotherOne) {
  const std::vector<std::wstring> plain{L"Driver=x;Server=localhost;Debug=0;"};
  EXPECT_EQ(attempts(L"Driver=x"), plain);
  SetEnvironmentVariableW(L"ZD_OTHER_SERVER", L"192.0.2.1");
  EXPECT_EQ(attempts(L"Driver=x"), std::vector<std::wstring>{plain[0] + L"SSLmode=full;"});
  SetEnvironmentVariableW(L"ZD_OTHER_SERVER", nullptr);
  EXPECT_EQ(attempts(L"Driver=x"), plain);
}

TEST(DriverProfile, OptionsThatTheServerDoesNotHaveAreRefused) {
  const auto refused = [](const std::wstring& options) {
    try {
      attempts(options);
      return 0;
    } catch (const ConnectionStringError& error) {
      EXPECT_EQ(error.reason(), ConnectionStringError::Reason::unknown_keyword);
      return error.part();
    }
  };
  EXPECT_EQ(refused(L"Server=db;pqopt=x"), 2);
  EXPECT_EQ(refused(L"Servername=db"), 1);
  EXPECT_EQ(refused(L"driver=x;dsn=x;server=x;port=1;database=x;uid=x;pwd=x;schema=x;debug=1;sslmode=x"), 0);
}

TEST(DriverProfile, DescriptionHoldsServerPortDatabaseAndUser) {
  EXPECT_EQ(described(L"Server=db;Port=5433;Database=rules;Uid=desk;Pwd=secret;Schema=secret;Debug=secret"),
            L"desk@db:5433/rules");
  EXPECT_EQ(described(L"Database=rules"), L"localhost/rules");
  EXPECT_EQ(described(L"DSN=desk;Uid=me"), L"me@DSN=desk");
  EXPECT_EQ(described(L"Server=db;SSLmode=full"), L"db");
  EXPECT_EQ(described(L"Server=db;sslmode=require"), L"db (SSLmode=require)");
}

}  // namespace
